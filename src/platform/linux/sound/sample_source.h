// SPDX-License-Identifier: GPL-3.0-or-later
// Defines the format of the sound on the sound card's lines (stereo frames at 44100 Hz) and the
// interface through which the card pulls this sound in blocks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace sonarith::sound {

/// The card's only rate. The compact disc has the same rate, so its samples need no conversion.
inline constexpr int frameRate = 44100;

/// One sample for each of the two channels, 16 bits, native byte order.
struct StereoFrame {
    std::int16_t left = 0;
    std::int16_t right = 0;
    friend bool operator==(const StereoFrame&, const StereoFrame&) = default;
};

/// The state of a source after a pull.
enum class Supply {
    flowing,  ///< the source filled the whole block
    starving, ///< no more frames now (a drive spins up); the rest will follow
    ended,    ///< no more frames, and none will follow: the line becomes silent
    lost,     ///< like `ended`, but too early: the source's medium was removed
};

struct Pulled {
    std::size_t frames = 0; ///< how many frames the pull wrote to the beginning of the block
    Supply supply = Supply::flowing;
};

/// Feeds one line of the sound card. `pull` is called under the card's lock, on any thread that
/// advances the card; it must neither block nor call the card.
class SampleSource {
  public:
    virtual ~SampleSource() = default;
    /// Fills the beginning of `block`; the rest is unchanged. Each call continues directly after
    /// the last delivered frame: no frame is delivered twice or left out.
    [[nodiscard]] virtual Pulled pull(std::span<StereoFrame> block) = 0;
};

} // namespace sonarith::sound
