// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/sound_card_thread.h"

#include <chrono>
#include <utility>

namespace sonarith::sound {

namespace {

/// The interval while the card records or uses an external input (Work::all): one block of the
/// card. The wake-ups cost very little, and the interval is short compared with the output's
/// buffer.
constexpr std::chrono::milliseconds blockInterval{10};
/// The interval while only files play (Work::files): the duration of the sound in the largest
/// single write to the output (PlaybackSession). A shorter interval would only add wake-ups, and
/// each wake-up costs as much as the mixing.
constexpr std::chrono::milliseconds filesInterval{30};
/// The interval while a disc plays, or while a file plays and the level meter listens
/// (Work::playing). Less than half of PeakMeter::holdTime, so that the meter does not fall to 0 if
/// this thread is late once.
constexpr std::chrono::milliseconds playingInterval{20};
/// The interval while the level meter listens and no line plays (Work::silence).
constexpr std::chrono::milliseconds silenceInterval{50};

} // namespace

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
    while (!stop.stop_requested()) {
        {
            const std::lock_guard lock(mutex_);
            called_ = false;
        }
        // The card is checked after the flag was reset, so that no call of the wake-up hook is
        // missed.
        const SoundCard::Work work = card_.work();
        if (work != SoundCard::Work::none) {
            card_.advance(clock_());
        }
        std::unique_lock lock(mutex_);
        const auto called = [this] {
            return called_;
        };
        switch (work) {
        case SoundCard::Work::none:
            wake_.wait(lock, stop, called);
            break;
        case SoundCard::Work::silence:
            wake_.wait_for(lock, stop, silenceInterval, called);
            break;
        case SoundCard::Work::files:
            wake_.wait_for(lock, stop, filesInterval, called);
            break;
        case SoundCard::Work::playing:
            wake_.wait_for(lock, stop, playingInterval, called);
            break;
        case SoundCard::Work::all:
            wake_.wait_for(lock, stop, blockInterval, [] { return false; });
            break;
        }
    }
}

} // namespace sonarith::sound
