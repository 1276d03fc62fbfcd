// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/frame_scanner.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>
#include <utility>

#include "platform/linux/mp3/free_format.h"

namespace sonarith::mp3 {

namespace {

/// How many frames must follow one that no other frame leads to. Four random bytes pass for a
/// header once in some 5,000 places; with two more in the right places it is once in 10^13.
constexpr int followers = 2;
/// Places that are tried for the beginning of a stream in free format; each takes a long look, and
/// junk can be made of nothing else. Random junk of 70,000 bytes has one such place.
constexpr int maxFreeFormatTries = 1000;

bool startsWith(Bytes bytes, std::string_view sign) {
    return bytes.size() >= sign.size() && std::memcmp(bytes.data(), sign.data(), sign.size()) == 0;
}

/// The length of an ID3v2 tag (id3.org, version 2.4, section 3.1); 0 if it is none.
std::int64_t id3v2Bytes(Bytes bytes) {
    constexpr std::size_t ownHeaderBytes = 10;
    if (bytes.size() < ownHeaderBytes || !startsWith(bytes, "ID3")) {
        return 0;
    }
    std::int64_t length = 0;
    for (std::size_t i = 6; i < ownHeaderBytes; ++i) {
        if (bytes[i] >= 0x80) { // seven bits to a byte
            return 0;
        }
        length = length << 7 | bytes[i];
    }
    const bool hasFooter = (bytes[5] & 0x10) != 0;
    return length + static_cast<std::int64_t>(ownHeaderBytes) * (hasFooter ? 2 : 1);
}

/// The length of an APE tag (wiki.hydrogenaud.io, "APE Tags Header") from its header to its end; 0
/// if it is none.
std::int64_t apeBytes(Bytes bytes) {
    constexpr std::size_t ownHeaderBytes = 32;
    if (bytes.size() < ownHeaderBytes || !startsWith(bytes, "APETAGEX")) {
        return 0;
    }
    const std::uint32_t length =
        bytes[12] | bytes[13] << 8 | bytes[14] << 16 | static_cast<std::uint32_t>(bytes[15]) << 24;
    return static_cast<std::int64_t>(ownHeaderBytes) + length;
}

/// What the signs at `bytes` claim, whether or not it is true.
std::int64_t claimedTagBytes(Bytes bytes) {
    constexpr std::int64_t id3v1Bytes = 128;
    if (startsWith(bytes, "TAG")) {
        return id3v1Bytes;
    }
    return std::max(id3v2Bytes(bytes), apeBytes(bytes));
}

/// The next place from `offset` on where a header may begin; the size of `bytes` if there is none.
std::size_t findSync(Bytes bytes, std::size_t offset) {
    while (offset + headerBytes <= bytes.size()) {
        const void* found = std::memchr(bytes.data() + offset, 0xFF, bytes.size() - offset);
        if (found == nullptr) {
            break;
        }
        offset = static_cast<std::size_t>(static_cast<const std::uint8_t*>(found) - bytes.data());
        if (parseHeader(bytes.subspan(offset))) {
            return offset;
        }
        ++offset;
    }
    return bytes.size();
}

} // namespace

FrameScanner::FrameScanner(const ByteSource& source) : source_(&source), window_(source) {}

FrameScanner::FrameScanner(const ByteSource& source, const StreamFormat& format,
                           std::int64_t offset)
    : source_(&source), window_(source), position_(offset), format_(format) {}

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

/// Steps over the frame at position_; empty if it is of another format and is dropped.
std::optional<Frame> FrameScanner::take(const FrameHeader& header) {
    const std::int64_t offset = position_;
    position_ += header.bytes;
    if (!format_) {
        format_ = header.format;
    }
    if (header.format != *format_) {
        foreign_ = header.format;
        gap_ = true;
        ++loss_.framesDropped;
        return std::nullopt;
    }
    foreign_.reset();
    return Frame{offset, header, std::exchange(gap_, false)};
}

/// Whether what stands at the head of `bytes` is a whole frame and no chance likeness of one.
bool FrameScanner::belongs(const FrameHeader& header, Bytes bytes) const {
    if (header.bytes == 0 || bytes.size() < static_cast<std::size_t>(header.bytes)) {
        return false;
    }
    return header.format == format_ || header.format == foreign_ || verified(header, bytes, 0);
}

/// Whether another row of frames begins inside this one, because its end is missing.
bool FrameScanner::isTorn(const FrameHeader& header, Bytes bytes) const {
    const auto end = static_cast<std::size_t>(header.bytes);
    if (reachesEnd(bytes, end)) {
        return false;
    }
    const std::optional<FrameHeader> following = parseHeader(bytes.subspan(end));
    if (following && (following->format == header.format || verified(*following, bytes, end))) {
        return false;
    }
    for (std::size_t i = findSync(bytes, headerBytes); i < end; i = findSync(bytes, i + 1)) {
        const std::optional<FrameHeader> inner = parseHeader(bytes.subspan(i));
        if (inner->format == header.format && verified(*inner, bytes, i)) {
            return true;
        }
    }
    return false;
}

/// Whether the frame at `offset` of `bytes` is followed by enough others of its format.
bool FrameScanner::verified(const FrameHeader& header, Bytes bytes, std::size_t offset) const {
    FrameHeader last = header;
    for (int i = 0; i < followers; ++i) {
        if (last.bytes == 0) {
            return false;
        }
        offset += static_cast<std::size_t>(last.bytes);
        if (offset > bytes.size()) {
            return i > 0; // the file ends within the follower, which is torn
        }
        if (reachesEnd(bytes, offset)) {
            return true;
        }
        const std::optional<FrameHeader> following = parseHeader(bytes.subspan(offset));
        if (!following || following->format != header.format) {
            return false;
        }
        last = *following;
    }
    return true;
}

/// Whether no frame is to be expected at `offset` of `bytes`: the file or a tag is there.
bool FrameScanner::reachesEnd(Bytes bytes, std::size_t offset) const {
    return bytes.size() < offset + headerBytes || claimedTagBytes(bytes.subspan(offset)) > 0;
}

/// The length of the tag at position_, where `bytes` begin; 0 if there is none that can be trusted:
/// its end must be the end of the file, or something of sound or another tag must stand there.
std::int64_t FrameScanner::tagBytes(Bytes bytes) const {
    const std::int64_t claimed = claimedTagBytes(bytes);
    return claimed > 0 && leadsOn(position_ + claimed) ? claimed : 0;
}

bool FrameScanner::leadsOn(std::int64_t offset) const {
    // Read past the window: a tag that lies about its length is looked at in vain, and there may be
    // very many.
    std::array<std::uint8_t, 32> store{};
    const std::int64_t left = source_->size() - offset;
    const Bytes bytes =
        Bytes(store).first(static_cast<std::size_t>(std::clamp<std::int64_t>(left, 0, 32)));
    if (bytes.empty()) {
        return left == 0;
    }
    if (!source_->readAt(offset, std::span(store).first(bytes.size())).ok()) {
        return false; // the window meets the same failure if it matters
    }
    return parseHeader(bytes).has_value() || claimedTagBytes(bytes) > 0;
}

/// Goes on to the next place where a row of frames begins, or to the end.
void FrameScanner::skipJunk() {
    gap_ = true;
    foreign_.reset();
    for (bool first = true;; first = false) {
        const Bytes bytes = window_.at(position_);
        if (bytes.empty()) {
            return;
        }
        if (first && beginsFreeFormat(bytes)) {
            freeFormat_ = position_;
            return;
        }
        // What lies within the look-ahead of the window's end is left for the next round, unless
        // the source ends there.
        const bool last = position_ + static_cast<std::int64_t>(bytes.size()) == source_->size();
        const std::size_t limit = last ? bytes.size() : bytes.size() - SourceWindow::lookAhead + 1;
        for (std::size_t i = findSync(bytes, first ? 1 : 0); i < limit;
             i = findSync(bytes, i + 1)) {
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
    return !format_ && parseHeader(bytes) && ++freeFormatTries_ <= maxFreeFormatTries &&
           isFreeFormat(bytes.first(std::min(bytes.size(), SourceWindow::lookAhead)));
}

void FrameScanner::skip(std::int64_t bytes) {
    position_ += bytes;
    loss_.bytesSkipped += bytes;
}

} // namespace sonarith::mp3
