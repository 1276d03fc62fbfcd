// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/sound_card_thread.h"

#include <chrono>
#include <utility>

namespace sonarith::sound {

SoundCard::Time monotonicNow() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

SoundCardThread::SoundCardThread(SoundCard& card, Clock clock, ThreadStarter starter)
    : card_(card), clock_(std::move(clock)), starter_(std::move(starter)) {
    card_.setWakeUp([this] {
        {
            const std::lock_guard lock(mutex_);
            called_ = true;
        }
        wake_.notify_one();
        startUnlessStarted();
    });
    startUnlessStarted();
}

void SoundCardThread::startUnlessStarted() {
    const std::lock_guard lock(mutex_);
    if (thread_.joinable()) {
        return;
    }
    Result<std::thread> thread = starter_([this, stop = stop_.get_token()] { run(stop); });
    if (thread.ok()) {
        thread_ = std::move(thread.value());
    }
}

SoundCardThread::~SoundCardThread() {
    card_.setWakeUp(nullptr);
    stop_.request_stop();
    if (thread_.joinable()) {
        thread_.join();
    }
}

void SoundCardThread::run(const std::stop_token& stop) {
    // One block of the card: long enough to cost very little, and short compared with the output's
    // buffer.
    constexpr std::chrono::milliseconds shortInterval{10};
    // What is written to the speakers at once. Each wake-up costs as much as the mixing.
    constexpr std::chrono::milliseconds longInterval{30};
    while (!stop.stop_requested()) {
        {
            const std::lock_guard lock(mutex_);
            called_ = false;
        }
        // The card is checked after the flag was reset, so that no call is missed.
        const bool active = card_.active();
        if (active) {
            card_.advance(clock_());
        }
        const auto interval = card_.onlyPlaysFiles() ? longInterval : shortInterval;
        std::unique_lock lock(mutex_);
        if (active) {
            wake_.wait_for(lock, stop, interval, [] { return false; });
        } else {
            wake_.wait(lock, stop, [this] { return called_; });
        }
    }
}

} // namespace sonarith::sound
