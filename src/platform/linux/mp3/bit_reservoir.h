// SPDX-License-Identifier: GPL-3.0-or-later
// The bit reservoir: Layer III frames may use space in preceding frames. This tracks how much of it
// is actually available, and detects frames whose part is missing. It holds no sound data itself.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "platform/linux/mp3/mp3_header.h"

namespace sonarith::mp3 {

/// The start of a Layer III frame's main data, in bytes before its own.
[[nodiscard]] int mainDataBegin(const FrameHeader& header, Bytes frame);

/// Whether the side information describes silence in a form whose decoding cannot fail: no data, no
/// scale factors, normal windows.
[[nodiscard]] bool isEmptySideInfo(const FrameHeader& header, Bytes frame);

/// Changes a frame to silence that keeps the `begin` bytes before it in the reservoir, as if they
/// were its own: otherwise a decoder would use the contents of its memory for the missing part.
void silence(const FrameHeader& header, std::span<std::uint8_t> frame, int begin);

/// Fills the empty side information of a frame so that each granule and channel has two spectral
/// lines with the value 1, at full loudness. The frame's main data are zeros: in Huffman table 1
/// that is their code.
void setTone(const FrameHeader& header, std::span<std::uint8_t> frame);

class BitReservoir {
  public:
    /// The frames before the next one are missing.
    void clear() { available_ = 0; }
    /// Adds the next frame. If it refers further back than the available data, returns how far it
    /// may refer instead. Frames of other layers have no reservoir.
    [[nodiscard]] std::optional<int> admit(const FrameHeader& header, Bytes frame);

  private:
    int available_ = 0; ///< bytes that the next frame may refer back to
};

} // namespace sonarith::mp3
