// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/playback_feed.h"

#include <algorithm>

namespace sonarith::sound {

void PlaybackFeed::add(std::span<const StereoFrame> frames) {
    {
        const std::lock_guard lock(mutex_);
        if (!deviceOpen_ && queue_.empty() && isSilent(frames)) {
            return; // silence must not open a device
        }
        queue_.push(frames);
        if (queue_.size() < wanted_) {
            return;
        }
    }
    changed_.notify_all();
}

void PlaybackFeed::leave() {
    {
        const std::lock_guard lock(mutex_);
        leaving_ = true;
    }
    changed_.notify_all();
}

bool PlaybackFeed::isLeaving() const {
    const std::lock_guard lock(mutex_);
    return leaving_;
}

void PlaybackFeed::awaitSound() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] {
        queue_.dropSilence();
        return leaving_ || !queue_.empty();
    });
}

std::size_t PlaybackFeed::take(std::span<StereoFrame> out, std::chrono::milliseconds forAny,
                               std::chrono::milliseconds forAll) {
    std::unique_lock lock(mutex_);
    const auto isFull = [&] {
        return leaving_ || queue_.size() >= out.size();
    };
    // The first wait is already a wait for enough frames to fill `out`; the arrival of the first
    // frame does not end it. So while frames arrive continuously, the thread wakes once for each
    // full `out` and not twice.
    const auto first = std::min(forAny, forAll);
    if (!waitFor(lock, first, out.size(), isFull) && queue_.empty() &&
        waitFor(lock, forAny - first, 1, [this] { return leaving_ || !queue_.empty(); })) {
        waitFor(lock, forAll, out.size(), isFull);
    }
    return queue_.pop(out);
}

void PlaybackFeed::restUntil(std::chrono::steady_clock::time_point time) {
    std::unique_lock lock(mutex_);
    changed_.wait_until(lock, time, [this] { return leaving_; });
}

void PlaybackFeed::setDeviceOpen(bool open) {
    const std::lock_guard lock(mutex_);
    deviceOpen_ = open;
}

void PlaybackFeed::forgetQueued() {
    const std::lock_guard lock(mutex_);
    queue_.clear();
}

bool isSilent(std::span<const StereoFrame> frames) {
    return std::all_of(frames.begin(), frames.end(),
                       [](const StereoFrame& frame) { return frame == StereoFrame{}; });
}

} // namespace sonarith::sound
