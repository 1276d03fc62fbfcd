// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/mp3_header.h"

#include <algorithm>
#include <array>

namespace sonarith::mp3 {

namespace {

using BitRates = std::array<int, 15>; ///< kbit/s; 0 is free format

constexpr std::array<BitRates, 3> mpeg1BitRates{{
    {0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},
    {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320},
}};
constexpr std::array<BitRates, 3> mpeg2BitRates{{
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256},
    {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},
    {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},
}};
constexpr std::array<int, 3> mpeg1Rates{44100, 48000, 32000};

/// The number by which MPEG-1's sample rates are divided to get those of `version`.
int rateDivisor(MpegVersion version) {
    switch (version) {
    case MpegVersion::mpeg1:
        break;
    case MpegVersion::mpeg2:
        return 2;
    case MpegVersion::mpeg25:
        return 4;
    }
    return 1;
}

int frameBytes(const StreamFormat& format, int kilobits, int padding) {
    if (kilobits == 0) {
        return 0;
    }
    const int bits = kilobits * 1000;
    if (format.layer == 1) {
        return (12 * bits / format.rate + padding) * 4; // slots of four bytes
    }
    return format.samplesPerFrame() / 8 * bits / format.rate + padding;
}

} // namespace

int StreamFormat::samplesPerFrame() const {
    if (layer == 1) {
        return 384;
    }
    return layer == 3 && version != MpegVersion::mpeg1 ? 576 : 1152;
}

std::size_t FrameHeader::sideInfoBytes() const {
    if (format.version == MpegVersion::mpeg1) {
        return format.channels == 1 ? 17 : 32;
    }
    return format.channels == 1 ? 9 : 17;
}

int FrameHeader::mainDataBytes() const {
    return std::max(0, bytes - static_cast<int>(sideInfoOffset() + sideInfoBytes()));
}

std::optional<FrameHeader> parseHeader(Bytes bytes) {
    if (bytes.size() < headerBytes || bytes[0] != 0xFF || (bytes[1] & 0xE0) != 0xE0) {
        return std::nullopt;
    }
    const int version = bytes[1] >> 3 & 3; // 0: "2.5", 1: reserved, 2: MPEG-2, 3: MPEG-1
    const int layer = 4 - (bytes[1] >> 1 & 3);
    const int bitRate = bytes[2] >> 4;
    const int rate = bytes[2] >> 2 & 3;
    if (version == 1 || layer == 4 || bitRate == 15 || rate == 3) {
        return std::nullopt;
    }
    FrameHeader header;
    StreamFormat& format = header.format;
    format.version = version == 3   ? MpegVersion::mpeg1
                     : version == 2 ? MpegVersion::mpeg2
                                    : MpegVersion::mpeg25;
    format.layer = layer;
    format.rate = mpeg1Rates[static_cast<std::size_t>(rate)] / rateDivisor(format.version);
    format.channels = bytes[3] >> 6 == 3 ? 1 : 2;
    header.hasChecksum = (bytes[1] & 1) == 0;
    const auto& rates = format.version == MpegVersion::mpeg1 ? mpeg1BitRates : mpeg2BitRates;
    const int kilobits =
        rates[static_cast<std::size_t>(layer - 1)][static_cast<std::size_t>(bitRate)];
    header.bytes = frameBytes(format, kilobits, bytes[2] >> 1 & 1);
    return header;
}

} // namespace sonarith::mp3
