// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/info_tag.h"

#include <algorithm>
#include <cstring>

namespace sonarith::mp3 {

namespace {

/// In samples: the delay of every Layer III decoder before the first sample (LAME's technical FAQ).
constexpr std::int64_t decoderDelay = 529;

std::int64_t bigEndian32(Bytes bytes) {
    return static_cast<std::int64_t>(bytes[0]) << 24 | bytes[1] << 16 | bytes[2] << 8 | bytes[3];
}

/// `tag` begins with "Xing" or "Info". The format: mp3-tech.org, "Mp3 Info Tag rev 1".
GaplessTrim parseFields(const StreamFormat& format, Bytes tag) {
    enum Fields : unsigned { frames = 1, bytes = 2, seekTable = 4, quality = 8 };
    constexpr std::size_t delaysOffset = 21; // in the encoder's part
    if (tag.size() < 8) {
        return {};
    }
    const unsigned fields = tag[7];
    const std::size_t encoderPart =
        8 + ((fields & frames) != 0 ? 4U : 0U) + ((fields & bytes) != 0 ? 4U : 0U) +
        ((fields & seekTable) != 0 ? 100U : 0U) + ((fields & quality) != 0 ? 4U : 0U);
    if ((fields & frames) == 0 || tag.size() < encoderPart + delaysOffset + 3 ||
        tag[encoderPart] == 0) {
        return {};
    }
    const Bytes delays = tag.subspan(encoderPart + delaysOffset); // twice 12 bits
    const std::int64_t delay = delays[0] << 4 | delays[1] >> 4;
    const std::int64_t padding = (delays[1] & 0x0F) << 8 | delays[2];
    const std::int64_t codedEnd = bigEndian32(tag.subspan(8)) * format.samplesPerFrame();
    const std::int64_t begin = delay + decoderDelay;
    const std::int64_t end = std::min(codedEnd, codedEnd - padding + decoderDelay);
    return begin <= end ? GaplessTrim(begin, end, codedEnd) : GaplessTrim();
}

} // namespace

std::int64_t GaplessTrim::keptBefore(std::int64_t sample) const {
    const std::int64_t head = std::min(sample, begin_);
    const std::int64_t tail = std::clamp(sample, end_, codedEnd_) - end_;
    return sample - head - tail;
}

std::optional<GaplessTrim> parseInfoTag(const FrameHeader& header, Bytes frame) {
    if (header.format.layer != 3) {
        return std::nullopt;
    }
    // The tag follows the side information, which consists of zeros. If the frame has a
    // checksum, some encoders write the tag two bytes later, and others do not.
    const std::size_t begin = header.sideInfoOffset();
    for (const std::size_t offset :
         {headerBytes + header.sideInfoBytes(), begin + header.sideInfoBytes()}) {
        if (frame.size() < offset + 4) {
            continue;
        }
        const Bytes before = frame.first(offset).subspan(begin);
        const bool named = std::memcmp(frame.data() + offset, "Xing", 4) == 0 ||
                           std::memcmp(frame.data() + offset, "Info", 4) == 0;
        if (named &&
            std::all_of(before.begin(), before.end(), [](auto byte) { return byte == 0; })) {
            return parseFields(header.format, frame.subspan(offset));
        }
    }
    return std::nullopt;
}

} // namespace sonarith::mp3
