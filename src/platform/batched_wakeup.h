// SPDX-License-Identifier: GPL-3.0-or-later
// Calls a handler at an interval; while the machine is silent, several calls at once at a longer
// one. So a level meter seldom wakes the processor while there is nothing to measure. It does not
// know what silence is: its caller passes the query.
#pragma once

#include <functional>
#include <memory>

#include "platform/event_loop.h"

namespace sonarith {

class BatchedWakeup : public Wakeup {
  public:
    using SilenceQuery = std::function<bool()>;

    /// 50 ms for a meter's 10 ms: five times fewer wake-ups, and the trace still seems to move.
    static constexpr int callsInBatch = 5;
    /// Batches begin after this many calls in silence: the meter has shown the end of the sound by
    /// then, since a mixer holds its last level for some 50 ms.
    static constexpr int callsBeforeBatches = 10;

    /// `isSilent` is queried after the calls of each wake-up, and by endSilence(). The loop must
    /// outlive this. The handler may destroy this.
    BatchedWakeup(EventLoop& loop, EventLoop::Duration interval, std::function<void()> handler,
                  SilenceQuery isSilent);
    ~BatchedWakeup() override;
    BatchedWakeup(const BatchedWakeup&) = delete;
    BatchedWakeup& operator=(const BatchedWakeup&) = delete;

    /// To be called when sound may have begun: ends the batches if it has. Runs no handler; the
    /// calls that are due from the unfinished batch follow within a millisecond.
    void endSilence();

  private:
    struct Call {
        std::function<void()> handler;
        bool cancelled = false;
    };
    /// How many calls follow after which time, repeatedly.
    struct Rhythm {
        EventLoop::Duration interval;
        int calls;
        bool operator==(const Rhythm&) const = default;
    };

    [[nodiscard]] bool isBatching() const { return silentCalls_ >= callsBeforeBatches; }
    void arm(Rhythm rhythm);
    void run(int calls);

    EventLoop& loop_;
    EventLoop::Duration interval_;
    std::shared_ptr<Call> call_;
    SilenceQuery isSilent_;
    Rhythm rhythm_{};
    EventLoop::Time lastRun_{};
    int silentCalls_ = 0; ///< since the last sound, up to callsBeforeBatches
    bool running_ = false;
    std::unique_ptr<Wakeup> wakeup_;
};

} // namespace sonarith
