// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/bit_reservoir.h"

#include <algorithm>

namespace sonarith::mp3 {

namespace {

/// Layout of the side information: ISO/IEC 11172-3, 2.4.1.7, and 13818-3, 2.4.1.7.
struct Layout {
    int mainDataBeginBits;
    int privateBits;
    int shareBits; ///< for the scale factors that the second granule shares with the first
    int granules;
    int channels;
    int scaleFactorBits;
    int granuleBits; ///< for one channel
};

// The sizes of the first fields of one granule and channel, in order. The scale factor bits, whose
// number depends on the version (Layout), lie between the gain and "windows".
constexpr int lengthBits = 12;
constexpr int bigValuesBits = 9;
constexpr int gainBits = 8;
constexpr int windowsBits = 1; ///< whether other windows than the normal one are used
constexpr int tableBits = 5;
/// The offsets of some of these fields, in bits from the first field.
constexpr int bigValuesAt = lengthBits;
constexpr int gainAt = bigValuesAt + bigValuesBits;
constexpr int scaleFactorAt = gainAt + gainBits;

Layout layoutOf(const StreamFormat& format) {
    const bool mono = format.channels == 1;
    if (format.version == MpegVersion::mpeg1) {
        return {9, mono ? 5 : 3, 4 * format.channels, 2, format.channels, 4, 59};
    }
    return {8, mono ? 1 : 2, 0, 1, format.channels, 9, 63};
}

/// The number that consists of `count` bits. `first` is the index of the most significant of these
/// bits. Index 0 is the most significant bit of the first byte.
unsigned bitsAt(Bytes bytes, int first, int count) {
    unsigned value = 0;
    for (int i = first; i < first + count; ++i) {
        const unsigned byte = bytes[static_cast<std::size_t>(i / 8)];
        value = value << 1 | (byte >> (7 - i % 8) & 1);
    }
    return value;
}

void setBits(std::span<std::uint8_t> bytes, int first, int count, unsigned value) {
    for (int i = 0; i < count; ++i) {
        const int bit = first + i;
        const auto mask = static_cast<std::uint8_t>(0x80 >> bit % 8);
        std::uint8_t& byte = bytes[static_cast<std::size_t>(bit / 8)];
        const bool set = (value >> (count - 1 - i) & 1) != 0;
        byte = static_cast<std::uint8_t>(set ? byte | mask : byte & ~mask);
    }
}

template <typename Byte>
std::span<Byte> sideInfo(const FrameHeader& header, std::span<Byte> frame) {
    const std::size_t end = header.sideInfoOffset() + header.sideInfoBytes();
    return frame.size() < end ? std::span<Byte>()
                              : frame.first(end).subspan(header.sideInfoOffset());
}

} // namespace

int mainDataBegin(const FrameHeader& header, Bytes frame) {
    const Bytes side = sideInfo(header, frame);
    return side.empty()
               ? 0
               : static_cast<int>(bitsAt(side, 0, layoutOf(header.format).mainDataBeginBits));
}

bool isEmptySideInfo(const FrameHeader& header, Bytes frame) {
    const Bytes side = sideInfo(header, frame);
    if (side.empty()) {
        return false;
    }
    const Layout layout = layoutOf(header.format);
    int bit = layout.mainDataBeginBits + layout.privateBits + layout.shareBits;
    for (int part = 0; part < layout.granules * layout.channels; ++part) {
        if (bitsAt(side, bit, lengthBits + bigValuesBits) != 0 ||
            bitsAt(side, bit + scaleFactorAt, layout.scaleFactorBits + windowsBits) != 0) {
            return false;
        }
        bit += layout.granuleBits;
    }
    return true;
}

void silence(const FrameHeader& header, std::span<std::uint8_t> frame, int begin) {
    const std::span<std::uint8_t> side = sideInfo(header, frame);
    if (side.empty()) {
        return;
    }
    std::fill(side.begin(), side.end(), std::uint8_t{0});
    setBits(side, 0, layoutOf(header.format).mainDataBeginBits, static_cast<unsigned>(begin));
}

void setTone(const FrameHeader& header, std::span<std::uint8_t> frame) {
    const std::span<std::uint8_t> side = sideInfo(header, frame);
    const Layout layout = layoutOf(header.format);
    int bit = layout.mainDataBeginBits + layout.privateBits + layout.shareBits;
    for (int part = 0; part < layout.granules * layout.channels && !side.empty(); ++part) {
        constexpr unsigned codeBits = 5;   // three for the two values and two for their signs
        constexpr unsigned pairs = 1;      // "big values"
        constexpr unsigned fullGain = 210; // a factor of one
        constexpr unsigned table = 1;
        setBits(side, bit, lengthBits, codeBits);
        setBits(side, bit + bigValuesAt, bigValuesBits, pairs);
        setBits(side, bit + gainAt, gainBits, fullGain);
        setBits(side, bit + scaleFactorAt + layout.scaleFactorBits + windowsBits, tableBits, table);
        bit += layout.granuleBits;
    }
}

std::optional<int> BitReservoir::admit(const FrameHeader& header, Bytes frame) {
    if (header.format.layer != 3) {
        return std::nullopt;
    }
    const int wanted = mainDataBegin(header, frame);
    const int begin = std::min(wanted, available_);
    available_ = std::min(begin + header.mainDataBytes(), header.format.maxReservoirBytes());
    return begin < wanted ? std::optional(begin) : std::nullopt;
}

} // namespace sonarith::mp3
