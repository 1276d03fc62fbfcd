// SPDX-License-Identifier: GPL-3.0-or-later
// Distinguishes broken frames, which the decoder library gives up (stops decoding half-way), from
// silent frames. A broken frame changes the position of the library's synthesis window for the rest
// of the stream. The rounding of the samples depends on this position (see preroll_history.cpp). So
// later segments that are decoded separately would differ in the last bit from one pass over the
// whole stream. This class only checks frames; the caller chooses how to continue.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/linux/mp3/frame_decoder.h"
#include "platform/linux/mp3/frame_scanner.h"

namespace sonarith::mp3 {

/// A Layer III frame of the format of `like` that contains one low tone. The tone is audible
/// whatever frame was decoded before. The returned frame ends with `reservoir`, the data to which
/// the next frame may refer back.
[[nodiscard]] std::vector<std::uint8_t> soundingFrame(Bytes like, Bytes reservoir);

class BrokenFrameCheck {
  public:
    /// Whether the library gave up `frame`. `samples` are the samples that the library returned for
    /// `frame`; `bytes` are all bytes of `frame`. Also true if no decoder can be created for the
    /// check. Precondition: pass() was called for all earlier frames.
    [[nodiscard]] bool isBroken(const Frame& frame, Bytes bytes,
                                std::span<const std::int16_t> samples);
    /// Must be called for every frame, in order, and only after a call of isBroken() for that
    /// frame, if there is one.
    void pass(const Frame& frame, Bytes bytes);

  private:
    std::optional<FrameDecoder<float>> decoder_; ///< created on first use
    std::vector<std::uint8_t> reservoir_;        ///< the last main data of the passed frames
};

} // namespace sonarith::mp3
