// SPDX-License-Identifier: GPL-3.0-or-later
// Calls a handler once per interval, but in batches: waits for several intervals, then makes the
// calls of all these intervals, without a wait between them. The batches are small in sound and
// larger in silence. So a level meter seldom wakes the processor while there is nothing to measure.
// The caller passes the function that detects silence.
#pragma once

#include <functional>
#include <memory>

#include "platform/event_loop.h"

namespace sonarith {

class BatchedWakeup : public Wakeup {
  public:
    using SilenceQuery = std::function<bool()>;

    /// The level meter's interval is 10 ms, so its batches in sound come every 20 ms. The sound
    /// card measures the level of a playing disc equally often (SoundCardThread).
    static constexpr int callsInSound = 2;
    /// In silence the meter's batches come every 50 ms, often enough for its trace to move
    /// smoothly.
    static constexpr int callsInSilence = 5;
    /// The batches of silence begin after this many silent calls. The mixer still reports the last
    /// level for some 50 ms after the end of the sound, so the meter needs these calls to show the
    /// end.
    static constexpr int callsBeforeSilence = 10;

    /// `isSilent` is queried after the calls of each wake-up, and by endSilence(). The loop must
    /// outlive this object. The handler may destroy this object.
    BatchedWakeup(EventLoop& loop, EventLoop::Duration interval, std::function<void()> handler,
                  SilenceQuery isSilent);
    ~BatchedWakeup() override;
    BatchedWakeup(const BatchedWakeup&) = delete;
    BatchedWakeup& operator=(const BatchedWakeup&) = delete;

    /// Must be called when sound may have begun. Ends the silence if `isSilent` returns false. Does
    /// not call the handler itself: the calls of the unfinished batch that are already due follow
    /// within a millisecond.
    void endSilence();

  private:
    struct Call {
        std::function<void()> handler;
        bool cancelled = false;
    };
    /// `calls` calls are made at the end of every `interval`.
    struct Rhythm {
        EventLoop::Duration interval;
        int calls;
        bool operator==(const Rhythm&) const = default;
    };

    [[nodiscard]] bool inSilence() const { return silentCalls_ >= callsBeforeSilence; }
    [[nodiscard]] Rhythm batches(int calls) const { return {interval_ * calls, calls}; }
    void arm(Rhythm rhythm);
    void run(int calls);

    EventLoop& loop_;
    EventLoop::Duration interval_;
    std::shared_ptr<Call> call_;
    SilenceQuery isSilent_;
    Rhythm rhythm_{};
    EventLoop::Time lastRun_{};
    int silentCalls_ = 0; ///< calls since the last sound, at most callsBeforeSilence
    bool running_ = false;
    std::unique_ptr<Wakeup> wakeup_;
};

} // namespace sonarith
