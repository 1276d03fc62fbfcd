// SPDX-License-Identifier: GPL-3.0-or-later
// Tells frames that the library gives up half way from frames that are silent. After a frame that
// was given up the library's windows stand elsewhere for the rest of the stream, so that segments
// would differ in the last bit from one pass over all. It looks at frames; it decides no road.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/linux/mp3/frame_decoder.h"
#include "platform/linux/mp3/frame_scanner.h"

namespace sonarith::mp3 {

/// A frame of `like`'s format (Layer III) that sounds, whatever comes before it: one low tone.
/// `reservoir`, which the frame after it may reach back to, stands at its end.
[[nodiscard]] std::vector<std::uint8_t> soundingFrame(Bytes like, Bytes reservoir);

class BrokenFrameCheck {
  public:
    /// Whether the library gave up `frame`, which it decoded to `samples`; `bytes` are the frame's.
    /// The frames before it must have been passed.
    [[nodiscard]] bool isBroken(const Frame& frame, Bytes bytes,
                                std::span<const std::int16_t> samples);
    /// Goes on to the next frame.
    void pass(const Frame& frame, Bytes bytes);

  private:
    std::optional<FrameDecoder<float>> decoder_; ///< made when it is needed first
    std::vector<std::uint8_t> reservoir_; ///< the last main data of the frames that were passed
};

} // namespace sonarith::mp3
