// SPDX-License-Identifier: GPL-3.0-or-later
// Advances a sound card on a separate thread: every 10 ms while the card records or uses an
// external input, every 20 ms while it plays a disc or delivers sound to a listener, and less often
// while it only plays a file or only delivers silence to a listener. While the card is idle, the
// thread sleeps without waking up.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

#include "platform/linux/sound/sound_card.h"
#include "platform/thread_start.h"

namespace sonarith::sound {

/// The time of the machine's monotonic clock. In the program, each `now` that the card receives is
/// such a time.
[[nodiscard]] SoundCard::Time monotonicNow();

/// Advances `card` during the lifetime of this object; the card must outlive it. A card has only
/// one such object, which uses the card's wake-up hook. If no thread can be started, only other
/// threads advance the card, for example before they query a position; each call of the hook tries
/// again to start the thread.
class SoundCardThread {
  public:
    using Clock = std::function<SoundCard::Time()>;

    explicit SoundCardThread(SoundCard& card, Clock clock = monotonicNow,
                             ThreadStarter starter = startThread);
    ~SoundCardThread();
    SoundCardThread(const SoundCardThread&) = delete;
    SoundCardThread& operator=(const SoundCardThread&) = delete;

  private:
    void startUnlessStarted();
    void run(const std::stop_token& stop);

    SoundCard& card_;
    Clock clock_;
    ThreadStarter starter_;
    std::mutex mutex_;
    std::condition_variable_any wake_;
    bool called_ = false; ///< the wake-up hook was called since the card was last checked
    std::stop_source stop_;
    std::thread thread_; ///< assigned while mutex_ is locked
};

} // namespace sonarith::sound
