// SPDX-License-Identifier: GPL-3.0-or-later
// The event loop in virtual time: a capture of an hour runs in milliseconds, and a test can produce
// every interleaving. It never sleeps and reads no clock of the machine.
//
//     VirtualEventLoop loop;
//     loop.atYield(3, [&] { form.Command2.click(); });       // inside the third yield from now
//     loop.after(250ms, [&] { form.Command8.click(); });     // once, 250 ms from now
//     job.run();                                             // yields and waits as it likes
//     EXPECT_THROW(window.close(), ProgramEnded);            // endProgram() throws this
//     loop.advance(5s);                                      // idle time, timers tick
#pragma once

#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include "platform/event_loop.h"

namespace sonarith::test {

/// Thrown by endProgram() instead of ending the process. Not derived from std::exception, so that
/// no handler treats it as a failure.
struct ProgramEnded {};

/// Thrown for a wait that would never end on the real loop: nothing is due and the condition is
/// still true, or it was true for longer than any job of the program takes.
class WaitNeverEnds : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

class VirtualEventLoop final : public EventLoop {
  public:
    // --- the loop's own operations ---------------------------------------------------------

    /// Runs the actions scripted for this yield, then every timer and action that is due at the
    /// current virtual time. Does not advance the time.
    void yield() override {
        if (!beginYield()) {
            return;
        }
        if (++yieldsWithoutTime_ > maximumYieldsWithoutTime) {
            throw WaitNeverEnds("a loop of yields that nothing ends; use waitWhile or waitFor");
        }
        // One round per yield: what becomes due during this yield runs in the next one.
        const auto round = due(now_);
        for (const auto& entry : round) {
            run(entry);
        }
    }

    /// Handles one event after another and evaluates the condition after each. If none is due, the
    /// time advances to the next one. Each round counts as one yield.
    void waitWhile(const std::function<bool()>& condition) override {
        const Time deadline = now_ + longestWait;
        while (!ended_ && condition()) {
            if (!beginYield()) {
                return;
            }
            if (!condition()) {
                return; // an action scripted for this yield ended the wait
            }
            const auto next = nextEntry();
            if (!next) {
                throw WaitNeverEnds("nothing is due and the wait's condition still holds");
            }
            if (next->due > deadline) {
                throw WaitNeverEnds("the wait's condition held for longer than longestWait");
            }
            moveTo(next->due);
            run(next);
        }
    }

    [[nodiscard]] Time now() const override { return now_; }

    [[nodiscard]] double secondsSinceMidnight() const override {
        const std::chrono::duration<double> passed = now_ - midnightReference_;
        return std::fmod(secondsAtReference_ + passed.count(), 86400.0);
    }

    [[nodiscard]] std::unique_ptr<Wakeup> every(Duration interval,
                                                std::function<void()> handler) override {
        const Duration atLeastOne = std::max(interval, Duration(1));
        return std::make_unique<Handle>(add(now_ + atLeastOne, atLeastOne, std::move(handler)));
    }

    [[noreturn]] void endProgram() override {
        ended_ = true;
        throw ProgramEnded();
    }

    // --- what a test scripts ---------------------------------------------------------------

    /// Runs `action` once inside the n-th yield from now (1 is the next one), before what is due.
    void atYield(int n, std::function<void()> action) {
        yieldActions_.emplace(yieldCount_ + n, std::move(action));
    }
    /// Runs `action` once, `delay` from now, inside the yield or wait that is running then.
    void after(Duration delay, std::function<void()> action) {
        add(now_ + delay, Duration(0), std::move(action));
    }
    /// Advances the time while the program is idle: timers and actions run, each at its own time.
    void advance(Duration duration) {
        const Time end = now_ + duration;
        for (auto next = nextEntry(); !ended_ && next && next->due <= end; next = nextEntry()) {
            moveTo(next->due);
            run(next);
        }
        moveTo(end);
    }
    /// Sets the wall clock.
    void setSecondsSinceMidnight(double seconds) {
        secondsAtReference_ = seconds;
        midnightReference_ = now_;
    }

    // --- what a test reads --------------------------------------------------------------

    /// Number of yields so far, including the rounds of waits.
    [[nodiscard]] int yieldCount() const { return yieldCount_; }
    /// True after endProgram() was called.
    [[nodiscard]] bool ended() const { return ended_; }
    /// Number of yields and waits after the end of the program: must stay 0.
    [[nodiscard]] int yieldsAfterEnd() const { return yieldsAfterEnd_; }
    /// Number of existing wake-ups (enabled timers, running waits).
    [[nodiscard]] std::size_t wakeupCount() const {
        return static_cast<std::size_t>(
            std::count_if(entries_.begin(), entries_.end(), [](const auto& entry) {
                return entry->active && entry->interval.count() > 0;
            }));
    }

    /// A longer wait counts as endless: a day is far longer than any disc.
    Duration longestWait = std::chrono::hours(24);

  private:
    struct Entry {
        Time due;
        Duration interval; ///< 0: once
        std::function<void()> handler;
        bool active = true;
        bool running = false;
    };
    using EntryPointer = std::shared_ptr<Entry>;

    class Handle final : public Wakeup {
      public:
        explicit Handle(EntryPointer entry) : entry_(std::move(entry)) {}
        ~Handle() override { entry_->active = false; }
        Handle(const Handle&) = delete;
        Handle& operator=(const Handle&) = delete;

      private:
        EntryPointer entry_;
    };

    /// Far more than any plain loop of yields in the program, small enough to fail within a second.
    static constexpr int maximumYieldsWithoutTime = 1'000'000;

    /// Counts the yield and runs its scripted actions; false after the end of the program.
    bool beginYield() {
        if (ended_) {
            ++yieldsAfterEnd_;
            return false;
        }
        ++yieldCount_;
        for (auto found = yieldActions_.find(yieldCount_); found != yieldActions_.end();
             found = yieldActions_.find(yieldCount_)) {
            const auto action = std::move(found->second);
            yieldActions_.erase(found);
            action();
        }
        return true;
    }

    EntryPointer add(Time due, Duration interval, std::function<void()> handler) {
        auto entry = std::make_shared<Entry>();
        entry->due = due;
        entry->interval = interval;
        entry->handler = std::move(handler);
        entries_.push_back(entry);
        return entry;
    }

    void removeInactive() {
        std::erase_if(entries_, [](const auto& entry) { return !entry->active; });
    }

    [[nodiscard]] std::vector<EntryPointer> due(Time time) {
        removeInactive();
        std::vector<EntryPointer> found;
        for (const auto& entry : entries_) {
            if (!entry->running && entry->due <= time) {
                found.push_back(entry);
            }
        }
        std::stable_sort(found.begin(), found.end(),
                         [](const auto& a, const auto& b) { return a->due < b->due; });
        return found;
    }

    /// The entry that is due first, the oldest of several. None if every entry is running.
    [[nodiscard]] EntryPointer nextEntry() {
        removeInactive();
        EntryPointer next;
        for (const auto& entry : entries_) {
            if (!entry->running && (!next || entry->due < next->due)) {
                next = entry;
            }
        }
        return next;
    }

    void moveTo(Time time) {
        if (time > now_) {
            now_ = time;
            yieldsWithoutTime_ = 0;
        }
    }

    void run(const EntryPointer& entry) {
        // An earlier handler may have cancelled or run the entry, or ended the program.
        if (!entry->active || entry->running || ended_ || entry->due > now_) {
            return;
        }
        if (entry->interval.count() == 0) {
            entry->active = false;
            const auto action = entry->handler;
            action();
            return;
        }
        entry->running = true;
        const Rearm rearm{*this, *entry};
        entry->handler();
    }

    /// Runs at the end of a handler, also after an exception: ticks that became due meanwhile are
    /// dropped.
    struct Rearm {
        VirtualEventLoop& loop;
        Entry& entry;
        ~Rearm() {
            entry.running = false;
            while (entry.due <= loop.now_) {
                entry.due += entry.interval;
            }
        }
    };

    /// An arbitrary origin; not 0, so that no code treats it as one.
    Time now_ = std::chrono::hours(3);
    double secondsAtReference_ = 43200.0; // noon
    Time midnightReference_ = now_;
    int yieldCount_ = 0;
    int yieldsWithoutTime_ = 0;
    int yieldsAfterEnd_ = 0;
    bool ended_ = false;
    std::vector<EntryPointer> entries_;
    std::multimap<int, std::function<void()>> yieldActions_;
};

} // namespace sonarith::test
