// SPDX-License-Identifier: GPL-3.0-or-later
// The bit reservoir consists of those bytes of preceding frames in which the main data of a
// Layer III frame may begin. BitReservoir counts how many of these bytes are available, and detects
// frames that refer to missing bytes; it stores no sound data and changes no frame. The free
// functions of this header read or change the side information of a frame.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "platform/linux/mp3/mp3_header.h"

namespace sonarith::mp3 {

/// How many bytes of preceding frames belong to the main data of a Layer III frame.
[[nodiscard]] int mainDataBegin(const FrameHeader& header, Bytes frame);

/// Whether the side information describes silence in a form whose decoding cannot fail: no data, no
/// scale factors, normal windows.
[[nodiscard]] bool isEmptySideInfo(const FrameHeader& header, Bytes frame);

/// Silences a frame that refers to missing data: in place of these data, a decoder would decode
/// whatever its memory contains. Afterwards the frame's main data is empty, and the frame's
/// mainDataBegin() is `begin`, in bytes. With 0 instead, a decoder might drop all earlier bytes,
/// which later frames may need.
void silence(const FrameHeader& header, std::span<std::uint8_t> frame, int begin);

/// Fills the empty side information of a frame so that each granule and channel has two spectral
/// lines with the value 1, at full loudness. The frame's main data must begin with zeros, the code
/// of these values in Huffman table 1.
void setTone(const FrameHeader& header, std::span<std::uint8_t> frame);

class BitReservoir {
  public:
    /// Empties the reservoir. Must be called before a frame that follows a gap in the stream.
    void clear() { available_ = 0; }
    /// Adds the next frame. If the frame refers to more bytes than are available, returns how many
    /// are available; otherwise returns nothing. Has no effect for Layers I and II, which have no
    /// reservoir.
    [[nodiscard]] std::optional<int> admit(const FrameHeader& header, Bytes frame);

  private:
    int available_ = 0; ///< bytes that the next frame may refer back to
};

} // namespace sonarith::mp3
