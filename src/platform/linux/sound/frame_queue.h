// SPDX-License-Identifier: GPL-3.0-or-later
// A queue of frames in a fixed store, between the card and the thread of a device. It has no lock
// of its own: both sides hold theirs for the copying alone, a few microseconds.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

#include "platform/linux/sound/sample_source.h"

namespace sonarith::sound {

class FrameQueue {
  public:
    explicit FrameQueue(std::size_t capacityInFrames) : store_(capacityInFrames) {}

    [[nodiscard]] std::size_t size() const { return size_; }
    [[nodiscard]] bool empty() const { return size_ == 0; }

    /// Puts the head of `frames` behind what is queued; answers how many fitted.
    std::size_t push(std::span<const StereoFrame> frames) {
        const std::size_t count = std::min(frames.size(), store_.size() - size_);
        for (std::size_t i = 0; i < count; ++i) {
            store_[(head_ + size_ + i) % store_.size()] = frames[i];
        }
        size_ += count;
        return count;
    }

    /// Takes the oldest frames into the head of `out`; answers how many there were.
    std::size_t pop(std::span<StereoFrame> out) {
        const std::size_t count = std::min(out.size(), size_);
        for (std::size_t i = 0; i < count; ++i) {
            out[i] = store_[(head_ + i) % store_.size()];
        }
        drop(count);
        return count;
    }

    /// Takes the oldest `count` frames (or all, if there are fewer) and forgets them.
    void drop(std::size_t count) {
        count = std::min(count, size_);
        head_ = (head_ + count) % store_.size();
        size_ -= count;
    }

    /// Forgets the silent frames at the head, if there are any.
    void dropSilence() {
        while (size_ > 0 && store_[head_] == StereoFrame{}) {
            drop(1);
        }
    }

  private:
    std::vector<StereoFrame> store_;
    std::size_t head_ = 0;
    std::size_t size_ = 0;
};

} // namespace sonarith::sound
