// SPDX-License-Identifier: GPL-3.0-or-later
// A queue of frames in a fixed store, made once, between the card and the thread of a device or of
// a reader. It has no lock of its own: both sides hold theirs for the copying alone.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

#include "platform/linux/sound/sample_source.h"

namespace sonarith::sound {

class FrameQueue {
  public:
    /// Holds `capacity` frames, at least one.
    explicit FrameQueue(std::size_t capacity) : store_(capacity) {}

    [[nodiscard]] std::size_t size() const { return size_; }
    /// How many frames still fit.
    [[nodiscard]] std::size_t space() const { return store_.size() - size_; }
    [[nodiscard]] bool empty() const { return size_ == 0; }

    /// Puts the head of `frames` behind what is queued; answers how many fitted.
    std::size_t push(std::span<const StereoFrame> frames) {
        const std::size_t count = std::min(frames.size(), space());
        const std::size_t tail = (head_ + size_) % store_.size();
        const std::size_t untilWrap = std::min(count, store_.size() - tail);
        std::copy_n(frames.data(), untilWrap, store_.data() + tail);
        std::copy_n(frames.data() + untilWrap, count - untilWrap, store_.data());
        size_ += count;
        return count;
    }

    /// Takes the oldest frames into the head of `out`; answers how many there were.
    std::size_t pop(std::span<StereoFrame> out) {
        const std::size_t count = std::min(out.size(), size_);
        const std::size_t untilWrap = std::min(count, store_.size() - head_);
        std::copy_n(store_.data() + head_, untilWrap, out.data());
        std::copy_n(store_.data(), count - untilWrap, out.data() + untilWrap);
        drop(count);
        return count;
    }

    /// Takes the oldest `count` frames (or all, if there are fewer) and forgets them.
    void drop(std::size_t count) {
        count = std::min(count, size_);
        head_ = (head_ + count) % store_.size();
        size_ -= count;
    }

    void clear() { drop(size_); }

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
