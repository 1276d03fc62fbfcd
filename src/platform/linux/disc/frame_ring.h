// SPDX-License-Identifier: GPL-3.0-or-later
// A ring of stereo frames of fixed size, made once: what was put in first is taken first.
// It knows no threads; who shares it locks it.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "platform/linux/sound/sample_source.h"

namespace sonarith::disc {

class FrameRing {
  public:
    /// Holds `capacity` frames, at least one.
    explicit FrameRing(std::size_t capacity);

    /// How many frames can still be put in.
    [[nodiscard]] std::size_t space() const { return frames_.size() - filled_; }
    /// Puts all of `frames` in. Precondition: frames.size() <= space().
    void put(std::span<const sound::StereoFrame> frames);
    /// Moves the oldest frames to the head of `block`; returns how many there were for it.
    [[nodiscard]] std::size_t take(std::span<sound::StereoFrame> block);
    void clear();

  private:
    std::vector<sound::StereoFrame> frames_;
    std::size_t head_ = 0; ///< place of the oldest frame
    std::size_t filled_ = 0;
};

} // namespace sonarith::disc
