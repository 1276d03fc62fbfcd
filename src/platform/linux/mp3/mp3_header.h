// SPDX-License-Identifier: GPL-3.0-or-later
// Parses the four-byte header of an MPEG audio frame (ISO/IEC 11172-3 and 13818-3, and the "2.5"
// extension for low rates), and computes the layout of the frame. Decodes nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace sonarith::mp3 {

using Bytes = std::span<const std::uint8_t>;

enum class MpegVersion : std::uint8_t { mpeg1, mpeg2, mpeg25 };

inline constexpr std::size_t headerBytes = 4;
/// The largest frame whose header states a bit rate: Layer II at 160 kbit/s and 8000 Hz, padded.
inline constexpr int maxFrameBytes = 2881;

/// The properties that normally all frames of a stream share.
struct StreamFormat {
    MpegVersion version = MpegVersion::mpeg1;
    int layer = 3;    ///< 1 to 3
    int rate = 44100; ///< samples per second and channel
    int channels = 2; ///< 1 or 2
    friend bool operator==(const StreamFormat&, const StreamFormat&) = default;

    /// The number of decoded samples of one frame, per channel.
    [[nodiscard]] int samplesPerFrame() const;
    /// How far back, in bytes, a Layer III frame may begin its main data.
    [[nodiscard]] int maxReservoirBytes() const {
        return version == MpegVersion::mpeg1 ? 511 : 255;
    }
};

struct FrameHeader {
    StreamFormat format;
    int bytes = 0; ///< size of the whole frame; 0 in free format, whose headers do not state it
    bool hasChecksum = false;

    /// The offset of the side information of a Layer III frame.
    [[nodiscard]] std::size_t sideInfoOffset() const {
        return headerBytes + (hasChecksum ? 2U : 0U);
    }
    [[nodiscard]] std::size_t sideInfoBytes() const;
    /// The bytes that a Layer III frame adds to the bit reservoir.
    [[nodiscard]] int mainDataBytes() const;
};

/// Empty if `bytes` has fewer than four bytes or does not begin with a header.
[[nodiscard]] std::optional<FrameHeader> parseHeader(Bytes bytes);

} // namespace sonarith::mp3
