// SPDX-License-Identifier: GPL-3.0-or-later
// What the sound card's lines carry: stereo frames at 44100 Hz, pulled by the engine in blocks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace sonarith::sound {

/// The card's one rate, that of the compact disc, so that a disc's samples pass unchanged.
inline constexpr int frameRate = 44100;

/// One sample for each of the two channels, 16 bits, native byte order.
struct StereoFrame {
    std::int16_t left = 0;
    std::int16_t right = 0;
    friend bool operator==(const StereoFrame&, const StereoFrame&) = default;
};

/// What a source can say after delivering some frames.
enum class Supply {
    flowing,  ///< it filled the whole block
    starving, ///< it has no more at this moment (a drive spinning up); the rest will come
    ended,    ///< it has no more, and none will come: the line falls silent
    lost,     ///< as `ended`, before its time: its medium is gone
};

struct Pulled {
    std::size_t frames = 0; ///< how many frames at the head of the block were written
    Supply supply = Supply::flowing;
};

/// Feeds one line of the sound card. `pull` is called under the card's lock, on whichever thread is
/// moving the card on; it never blocks and never calls the card.
class SampleSource {
  public:
    virtual ~SampleSource() = default;
    /// Fills the head of `block`; the rest of it is left as it was. Frames that were delivered are
    /// consumed: they are neither delivered again nor skipped.
    [[nodiscard]] virtual Pulled pull(std::span<StereoFrame> block) = 0;
};

} // namespace sonarith::sound
