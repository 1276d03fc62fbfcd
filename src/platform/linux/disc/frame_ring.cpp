// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/frame_ring.h"

#include <algorithm>

namespace sonarith::disc {

FrameRing::FrameRing(std::size_t capacity) : frames_(std::max<std::size_t>(capacity, 1)) {}

void FrameRing::put(std::span<const sound::StereoFrame> frames) {
    const std::size_t tail = (head_ + filled_) % frames_.size();
    const std::size_t untilWrap = std::min(frames.size(), frames_.size() - tail);
    std::copy_n(frames.data(), untilWrap, frames_.data() + tail);
    std::copy(frames.begin() + static_cast<std::ptrdiff_t>(untilWrap), frames.end(),
              frames_.begin());
    filled_ += frames.size();
}

std::size_t FrameRing::take(std::span<sound::StereoFrame> block) {
    const std::size_t count = std::min(block.size(), filled_);
    const std::size_t untilWrap = std::min(count, frames_.size() - head_);
    std::copy_n(frames_.data() + head_, untilWrap, block.data());
    std::copy_n(frames_.data(), count - untilWrap, block.data() + untilWrap);
    head_ = (head_ + count) % frames_.size();
    filled_ -= count;
    return count;
}

void FrameRing::clear() {
    head_ = 0;
    filled_ = 0;
}

} // namespace sonarith::disc
