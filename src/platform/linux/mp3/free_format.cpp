// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/free_format.h"

#include <algorithm>

namespace sonarith::mp3 {

namespace {

bool isFreeHeader(const std::optional<FrameHeader>& header, const StreamFormat& format) {
    return header && header->bytes == 0 && header->format == format;
}

/// What no frame with sound in it is smaller than: its header and side information; and in the
/// other layers what 8 kbit/s come to, which is the lowest rate that encoders know.
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
    // A slot of padding makes neighbours differ by one byte (Layer I: four).
    const std::size_t slot = first->format.layer == 1 ? 4 : 1;
    for (std::size_t size = headerBytes; 2 * size + slot + headerBytes <= bytes.size(); ++size) {
        if (!isFreeHeader(parseHeader(bytes.subspan(size)), first->format)) {
            continue;
        }
        if (size < smallestFrame(*first)) {
            return false; // the library would make frames of that size, a thousand times the sound
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
