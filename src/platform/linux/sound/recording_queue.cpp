// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/recording_queue.h"

#include <limits>

namespace sonarith::sound {

void RecordingQueue::record(std::span<const StereoFrame> frames) {
    bool batchIsReady = false;
    {
        const std::lock_guard lock(mutex_);
        if (ended_) {
            return;
        }
        const bool wasReady = queue_.size() >= batchFrames;
        frames_ += static_cast<std::int64_t>(queue_.push(frames));
        batchIsReady = !wasReady && queue_.size() >= batchFrames;
        if (!stalled_ && queue_.size() >= stallFrames) {
            stalled_ = true;
            onFlow_(Flow::stalled);
        }
    }
    if (batchIsReady) {
        changed_.notify_all();
    }
}

std::size_t RecordingQueue::room() const {
    const std::lock_guard lock(mutex_);
    return ended_ ? std::numeric_limits<std::size_t>::max() : queue_.space();
}

std::int64_t RecordingQueue::frames() const {
    const std::lock_guard lock(mutex_);
    return frames_;
}

void RecordingQueue::end() {
    {
        const std::lock_guard lock(mutex_);
        ended_ = true;
    }
    changed_.notify_all();
}

void RecordingQueue::giveUp(std::int64_t kept) {
    {
        const std::lock_guard lock(mutex_);
        ended_ = true;
        queue_.clear();
        frames_ = kept;
    }
    changed_.notify_all();
}

std::size_t RecordingQueue::take(std::span<StereoFrame> out) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return ended_ || queue_.size() >= batchFrames; });
    const std::size_t count = queue_.pop(out);
    if (stalled_ && queue_.size() < batchFrames) {
        stalled_ = false;
        onFlow_(Flow::flowing);
    }
    return count;
}

} // namespace sonarith::sound
