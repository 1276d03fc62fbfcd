// SPDX-License-Identifier: GPL-3.0-or-later
// Distinguishes broken frames, which the decoder library gives up (stops decoding half-way), from
// silent frames. After a broken frame the library's window state differs for the rest of the
// stream, so segments decoded separately would differ in the last bit from one pass over the whole
// stream. This class only checks frames; the caller chooses how to continue.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/linux/mp3/frame_decoder.h"
#include "platform/linux/mp3/frame_scanner.h"

namespace sonarith::mp3 {

/// A Layer III frame of the format of `like` with one low tone, which is audible after any
/// preceding frame. The frame ends with `reservoir`, the data to which the next frame may refer
/// back.
[[nodiscard]] std::vector<std::uint8_t> soundingFrame(Bytes like, Bytes reservoir);

class BrokenFrameCheck {
  public:
    /// Whether the library gave up `frame`, which it decoded to `samples`; `bytes` are all bytes of
    /// the frame. Precondition: pass() was called for the frames before it.
    [[nodiscard]] bool isBroken(const Frame& frame, Bytes bytes,
                                std::span<const std::int16_t> samples);
    /// Must be called for every frame, in order; for a frame that isBroken() checks, after that.
    void pass(const Frame& frame, Bytes bytes);

  private:
    std::optional<FrameDecoder<float>> decoder_; ///< created on first use
    std::vector<std::uint8_t> reservoir_;        ///< the last main data of the passed frames
};

} // namespace sonarith::mp3
