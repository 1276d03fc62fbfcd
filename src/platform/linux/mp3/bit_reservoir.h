// SPDX-License-Identifier: GPL-3.0-or-later
// Layer III frames borrow room from the frames before them. This keeps account of how much of that
// is really there, and tells the frames whose part is missing. It holds no sound data itself.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "platform/linux/mp3/mp3_header.h"

namespace sonarith::mp3 {

/// Where the main data of a Layer III frame begin: so many bytes before its own.
[[nodiscard]] int mainDataBegin(const FrameHeader& header, Bytes frame);

/// True if the side information describes silence in such a way that its decoding cannot fail: no
/// data, no scale factors, ordinary windows.
[[nodiscard]] bool isEmptySideInfo(const FrameHeader& header, Bytes frame);

/// Changes a frame to silence that passes on the `begin` bytes before it, as if they were its own:
/// a decoder would take whatever lies in its memory for the missing part.
void silence(const FrameHeader& header, std::span<std::uint8_t> frame, int begin);

/// Fills the empty side information of a frame so that each granule and channel has two lines of
/// the spectrum with the value 1, at full loudness. The frame's main data are zeros: in Huffman
/// table 1 that is the code for them.
void setTone(const FrameHeader& header, std::span<std::uint8_t> frame);

class BitReservoir {
  public:
    /// The frames before the next one are not there.
    void clear() { available_ = 0; }
    /// Takes the next frame. If it reaches back further than to what there is, the answer is how
    /// far it may reach instead. Frames of other layers have no reservoir.
    [[nodiscard]] std::optional<int> admit(const FrameHeader& header, Bytes frame);

  private:
    int available_ = 0; ///< bytes that the next frame may reach back
};

} // namespace sonarith::mp3
