// SPDX-License-Identifier: GPL-3.0-or-later
// A queue of frames between the software sound card and a thread that uses a device, a disc or a
// file. The queue's buffer is allocated once. The queue has no lock: its owner must lock a mutex
// for each call.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>
#include <span>

#include "platform/linux/sound/sample_source.h"

namespace sonarith::sound {

class FrameQueue {
  public:
    /// Has space for `capacity` frames; `capacity` must not be 0. A queue that is often empty uses
    /// only the first memory pages of a large buffer: an empty queue starts at the beginning of the
    /// buffer again, and the system provides a page only when it is first used.
    explicit FrameQueue(std::size_t capacity)
        : capacity_(capacity),
          store_(static_cast<StereoFrame*>(::operator new(capacity * sizeof(StereoFrame)))) {}

    [[nodiscard]] std::size_t size() const { return size_; }
    /// The number of frames that still fit.
    [[nodiscard]] std::size_t space() const { return capacity_ - size_; }
    [[nodiscard]] bool empty() const { return size_ == 0; }

    /// Appends as many of `frames` as fit, and returns their number.
    std::size_t push(std::span<const StereoFrame> frames) {
        const std::size_t count = std::min(frames.size(), space());
        const std::size_t tail = (head_ + size_) % capacity_;
        const std::size_t untilWrap = std::min(count, capacity_ - tail);
        std::copy_n(frames.data(), untilWrap, store_.get() + tail);
        std::copy_n(frames.data() + untilWrap, count - untilWrap, store_.get());
        size_ += count;
        return count;
    }

    /// Moves the oldest frames, as many as fit, to the beginning of `out`, and returns their
    /// number.
    std::size_t pop(std::span<StereoFrame> out) {
        const std::size_t count = std::min(out.size(), size_);
        const std::size_t untilWrap = std::min(count, capacity_ - head_);
        std::copy_n(store_.get() + head_, untilWrap, out.data());
        std::copy_n(store_.get(), count - untilWrap, out.data() + untilWrap);
        drop(count);
        return count;
    }

    /// Removes the oldest `count` frames (or all, if there are fewer).
    void drop(std::size_t count) {
        count = std::min(count, size_);
        size_ -= count;
        // An empty queue starts at the beginning of the buffer again, where the system has already
        // provided the memory pages.
        head_ = size_ == 0 ? 0 : (head_ + count) % capacity_;
    }

    void clear() { drop(size_); }

    /// Removes the silent frames before the first frame that is not silent.
    void dropSilence() {
        while (size_ > 0 && store_[head_] == StereoFrame{}) {
            drop(1);
        }
    }

  private:
    struct Release {
        void operator()(StereoFrame* frames) const { ::operator delete(frames); }
    };

    std::size_t capacity_;
    std::unique_ptr<StereoFrame[], Release> store_; ///< uninitialised until frames are written
    std::size_t head_ = 0;
    std::size_t size_ = 0;
};

} // namespace sonarith::sound
