// SPDX-License-Identifier: GPL-3.0-or-later
// The thread that moves a sound card on, every 10 ms while the card has anything to do, and the
// clock that it goes by. While the card rests, the thread sleeps without waking up.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

#include "platform/linux/sound/sound_card.h"

namespace sonarith::sound {

/// The machine's monotonic clock: what every `now` of the card is taken from.
[[nodiscard]] SoundCard::Time monotonicNow();

/// Moves `card` from its construction to its destruction; the card outlives it. One for each card:
/// it takes the card's wake-up hook.
class SoundCardThread {
  public:
    using Clock = std::function<SoundCard::Time()>;

    explicit SoundCardThread(SoundCard& card, Clock clock = monotonicNow);
    ~SoundCardThread();
    SoundCardThread(const SoundCardThread&) = delete;
    SoundCardThread& operator=(const SoundCardThread&) = delete;

  private:
    void run(const std::stop_token& stop);

    SoundCard& card_;
    Clock clock_;
    std::mutex mutex_;
    std::condition_variable_any wake_;
    bool called_ = false; ///< the card may have become active since it was last looked at
    std::jthread thread_;
};

} // namespace sonarith::sound
