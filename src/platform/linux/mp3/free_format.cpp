// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/free_format.h"

#include <algorithm>

namespace sonarith::mp3 {

namespace {

bool isFreeHeader(const std::optional<FrameHeader>& header, const StreamFormat& format) {
    return header && header->bytes == 0 && header->format == format;
}

/// The minimum size of a frame with sound. In Layer III: its header and side information. In the
/// other layers: the size of a Layer II frame at 48 kHz and 8 kbit/s, the lowest bit rate that
/// encoders use.
std::size_t smallestFrame(const FrameHeader& header) {
    constexpr std::size_t otherLayers = 24;
    return header.format.layer == 3 ? header.sideInfoOffset() + header.sideInfoBytes()
                                    : otherLayers;
}

} // namespace

bool isFreeFormat(Bytes bytes) {
    const std::optional<FrameHeader> first = parseHeader(bytes);
    if (!first) {
        return false;
    }
    if (first->bytes > 0) {
        const auto size = static_cast<std::size_t>(first->bytes);
        return bytes.size() > size + headerBytes &&
               isFreeHeader(parseHeader(bytes.subspan(size)), first->format) &&
               isFreeFormat(bytes.subspan(size));
    }
    // A slot of padding changes the size of a frame by one byte (Layer I: four).
    const std::size_t slot = first->format.layer == 1 ? 4 : 1;
    for (std::size_t size = headerBytes; 2 * size + slot + headerBytes <= bytes.size(); ++size) {
        if (!isFreeHeader(parseHeader(bytes.subspan(size)), first->format)) {
            continue;
        }
        if (size < smallestFrame(*first)) {
            // From frames this small, libmpg123 would produce up to a hundred times as much sound
            // for each byte as from frames at 128 kbit/s.
            return false;
        }
        for (const std::size_t third : {2 * size, 2 * size - slot, 2 * size + slot}) {
            if (isFreeHeader(parseHeader(bytes.subspan(third)), first->format)) {
                return true;
            }
        }
    }
    return false;
}

} // namespace sonarith::mp3
