// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/frame_scanner.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/linux/mp3/free_format.h"

namespace sonarith::mp3 {

namespace {

/// The maximum number of offsets that are tried as the beginning of a stream in free format. Each
/// try is expensive, and hostile junk can consist of nothing but headers in free format. Without
/// this maximum, each of them would be tried. Random junk contains one such header in 78,000 bytes.
constexpr int maxFreeFormatTries = 1000;

} // namespace

FrameScanner::FrameScanner(const ByteSource& source) : source_(&source), window_(source) {}

FrameScanner::FrameScanner(const ByteSource& source, const StreamFormat& format,
                           std::int64_t offset)
    : source_(&source), window_(source), position_(offset), only_(format) {}

std::optional<Frame> FrameScanner::next() {
    while (!freeFormat_) {
        const Bytes bytes = window_.at(position_);
        if (bytes.empty()) {
            return std::nullopt;
        }
        if (const std::int64_t tag = tagBytes(bytes); tag > 0) {
            position_ += tag;
            gap_ = true;
            continue;
        }
        const std::optional<FrameHeader> header = parseHeader(bytes);
        if (!header || !belongs(*header, bytes) || isTorn(*header, bytes)) {
            skipJunk();
        } else if (const std::optional<Frame> frame = take(*header)) {
            return frame;
        }
    }
    return std::nullopt;
}

Bytes FrameScanner::bytesOf(const Frame& frame) {
    const Bytes bytes = window_.at(frame.offset);
    return bytes.first(std::min(bytes.size(), static_cast<std::size_t>(frame.header.bytes)));
}

/// Advances over the frame at position_. Returns nothing if the frame is of another format than
/// only_, because such frames are dropped.
std::optional<Frame> FrameScanner::take(const FrameHeader& header) {
    const std::int64_t offset = position_;
    position_ += header.bytes;
    if (current_ != header.format) {
        gap_ = gap_ || current_.has_value();
        current_ = header.format;
    }
    if (only_ && header.format != *only_) {
        ++loss_.framesDropped;
        return std::nullopt;
    }
    loss_.damagedPlaces += damaged_ ? 1 : 0;
    damaged_ = false;
    foundFrame_ = true;
    return Frame{offset, header, std::exchange(gap_, false)};
}

/// Whether `bytes` begins with a whole frame whose format is only_ or current_, or with a whole
/// frame that begins a row of frames (frame_row.h).
bool FrameScanner::belongs(const FrameHeader& header, Bytes bytes) {
    if (header.bytes == 0 || bytes.size() < static_cast<std::size_t>(header.bytes)) {
        return false;
    }
    return header.format == only_ || header.format == current_ || verified(header, bytes, 0);
}

/// Whether the end of the frame at position_ is missing. This is so if no frame, tag or end of the
/// source follows the frame, and a row of the same format begins inside the frame.
bool FrameScanner::isTorn(const FrameHeader& header, Bytes bytes) {
    const auto end = static_cast<std::size_t>(header.bytes);
    if (rowEndsAt(bytes, end)) {
        return false;
    }
    const std::optional<FrameHeader> following = parseHeader(bytes.subspan(end));
    if (following && (following->format == header.format || verified(*following, bytes, end))) {
        return false;
    }
    return rowsAhead_.anyWithin(header.format, position_ + static_cast<std::int64_t>(headerBytes),
                                position_ + header.bytes, bytes, position_);
}

bool FrameScanner::verified(const FrameHeader& header, Bytes bytes, std::size_t offset) {
    ++placesTried_;
    return beginsRow(header, bytes, offset);
}

/// The length of the tag at position_, where `bytes` begin; 0 if there is no tag, or if its length
/// cannot be trusted. The length is trusted if, at the offset where the tag would end, the
/// source ends, or a frame header or another tag begins.
std::int64_t FrameScanner::tagBytes(Bytes bytes) const {
    const std::int64_t claimed = claimedTagBytes(bytes);
    return claimed > 0 && mayTagEndAt(position_ + claimed) ? claimed : 0;
}

bool FrameScanner::mayTagEndAt(std::int64_t offset) const {
    // Read without the window, so that the window keeps its contents. If the tag's length is false,
    // the data at this offset are not needed, and there may be very many tags with a false length.
    std::array<std::uint8_t, 32> store{};
    const std::int64_t left = source_->size() - offset;
    const Bytes bytes =
        Bytes(store).first(static_cast<std::size_t>(std::clamp<std::int64_t>(left, 0, 32)));
    if (bytes.empty()) {
        return left == 0;
    }
    if (source_->readAt(offset, std::span(store).first(bytes.size())).failure) {
        // The error is not stored here: if the scan reaches this offset, the window's read fails,
        // too, and failure() returns that error.
        return false;
    }
    return parseHeader(bytes).has_value() || claimedTagBytes(bytes) > 0;
}

/// Advances to the next offset at which a row of frames or a stream in free format begins, or to
/// the end of the source.
void FrameScanner::skipJunk() {
    gap_ = true;
    current_.reset();
    damaged_ = foundFrame_;
    for (bool first = true;; first = false) {
        const Bytes bytes = window_.at(position_);
        if (bytes.empty()) {
            return;
        }
        if (first && beginsFreeFormat(bytes)) {
            freeFormat_ = position_;
            return;
        }
        // If the window is shorter than lookAhead or ends with the source, the inner loop tries all
        // offsets in the window. Otherwise the inner loop tries only offsets from which the window
        // contains at least lookAhead bytes. The next pass of the outer loop then tries the later
        // offsets.
        const bool last = bytes.size() < SourceWindow::lookAhead ||
                          position_ + static_cast<std::int64_t>(bytes.size()) == source_->size();
        const std::size_t limit = last ? bytes.size() : bytes.size() - SourceWindow::lookAhead + 1;
        for (std::size_t i = findHeader(bytes, first ? 1 : 0); i < limit;
             i = findHeader(bytes, i + 1)) {
            const FrameHeader header = *parseHeader(bytes.subspan(i));
            const bool whole =
                header.bytes > 0 && bytes.size() - i >= static_cast<std::size_t>(header.bytes);
            if (whole && verified(header, bytes, i)) {
                return skip(static_cast<std::int64_t>(i));
            }
            if (header.bytes == 0 && beginsFreeFormat(bytes.subspan(i))) {
                skip(static_cast<std::int64_t>(i));
                freeFormat_ = position_;
                return;
            }
        }
        skip(static_cast<std::int64_t>(limit));
    }
}

bool FrameScanner::beginsFreeFormat(Bytes bytes) {
    return !only_ && !foundFrame_ && parseHeader(bytes) &&
           ++freeFormatTries_ <= maxFreeFormatTries &&
           isFreeFormat(bytes.first(std::min(bytes.size(), SourceWindow::lookAhead)));
}

void FrameScanner::skip(std::int64_t bytes) {
    position_ += bytes;
    loss_.bytesSkipped += bytes;
}

} // namespace sonarith::mp3
