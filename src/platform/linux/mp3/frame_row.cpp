// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/frame_row.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>

namespace sonarith::mp3 {

namespace {

/// How many frames must follow the first frame of a row; fewer suffice before a tag or the end of
/// the source. In random bytes, about one offset in 5,000 has a valid header. One in 3 * 10^14 has
/// a valid header with two more headers of the same format after it at the right distances.
constexpr int followers = 2;

bool startsWith(Bytes bytes, std::string_view sign) {
    return bytes.size() >= sign.size() && std::memcmp(bytes.data(), sign.data(), sign.size()) == 0;
}

/// The length of the ID3v2 tag at the beginning of `bytes` (id3.org, version 2.4, section 3.1); 0
/// if there is none.
std::int64_t id3v2Bytes(Bytes bytes) {
    constexpr std::size_t ownHeaderBytes = 10;
    if (bytes.size() < ownHeaderBytes || !startsWith(bytes, "ID3")) {
        return 0;
    }
    std::int64_t length = 0;
    for (std::size_t i = 6; i < ownHeaderBytes; ++i) {
        if (bytes[i] >= 0x80) { // seven bits per byte
            return 0;
        }
        length = length << 7 | bytes[i];
    }
    const bool hasFooter = (bytes[5] & 0x10) != 0;
    return length + static_cast<std::int64_t>(ownHeaderBytes) * (hasFooter ? 2 : 1);
}

/// The length of the APE tag at the beginning of `bytes`, including its header
/// (wiki.hydrogenaud.io, "APE Tags Header"); 0 if there is none.
std::int64_t apeBytes(Bytes bytes) {
    constexpr std::size_t ownHeaderBytes = 32;
    if (bytes.size() < ownHeaderBytes || !startsWith(bytes, "APETAGEX")) {
        return 0;
    }
    const std::uint32_t length =
        bytes[12] | bytes[13] << 8 | bytes[14] << 16 | static_cast<std::uint32_t>(bytes[15]) << 24;
    return static_cast<std::int64_t>(ownHeaderBytes) + length;
}

} // namespace

std::int64_t claimedTagBytes(Bytes bytes) {
    constexpr std::int64_t id3v1Bytes = 128;
    if (startsWith(bytes, "TAG")) {
        return id3v1Bytes;
    }
    return std::max(id3v2Bytes(bytes), apeBytes(bytes));
}

std::size_t findHeader(Bytes bytes, std::size_t offset) {
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

bool rowEndsAt(Bytes bytes, std::size_t offset) {
    return bytes.size() < offset + headerBytes || claimedTagBytes(bytes.subspan(offset)) > 0;
}

bool beginsRow(const FrameHeader& header, Bytes bytes, std::size_t offset) {
    FrameHeader last = header;
    for (int i = 0; i < followers; ++i) {
        if (last.bytes == 0) {
            return false;
        }
        offset += static_cast<std::size_t>(last.bytes);
        if (offset > bytes.size()) {
            return i > 0; // only a follower may be truncated by the end of the source
        }
        if (rowEndsAt(bytes, offset)) {
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

bool RowsAhead::anyWithin(const StreamFormat& format, std::int64_t begin, std::int64_t end,
                          Bytes bytes, std::int64_t position) {
    const auto places = static_cast<std::size_t>(end - position);
    const Bytes headers = bytes.first(std::min(bytes.size(), places + headerBytes - 1));
    for (triedTo_ = std::max(triedTo_, begin); triedTo_ < end;) {
        const std::size_t place =
            findHeader(headers, static_cast<std::size_t>(triedTo_ - position));
        triedTo_ = end;
        if (place < headers.size()) {
            tryPlace(bytes, place, position);
            triedTo_ = position + static_cast<std::int64_t>(place) + 1;
        }
    }
    for (auto& row : rows_) {
        while (!row.second.empty() && row.second.front() < begin) {
            row.second.pop_front();
        }
    }
    const Places& found = placesOf(format);
    return !found.empty() && found.front() < end;
}

void RowsAhead::tryPlace(Bytes bytes, std::size_t place, std::int64_t position) {
    ++placesTried_;
    const FrameHeader header = *parseHeader(bytes.subspan(place));
    if (beginsRow(header, bytes, place)) {
        placesOf(header.format).push_back(position + static_cast<std::int64_t>(place));
    }
}

RowsAhead::Places& RowsAhead::placesOf(const StreamFormat& format) {
    for (auto& [known, places] : rows_) {
        if (known == format) {
            return places;
        }
    }
    return rows_.emplace_back(format, Places()).second;
}

} // namespace sonarith::mp3
