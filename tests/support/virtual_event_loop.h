// SPDX-License-Identifier: GPL-3.0-or-later
// An event loop in virtual time: a capture of an hour takes milliseconds, and a test can produce
// every interleaving of handlers. The loop never sleeps and does not read the machine's clock.
//
//     VirtualEventLoop loop;
//     loop.atYield(3, [&] { form.Command2.click(); });       // runs inside the third yield
//     loop.after(250ms, [&] { form.Command8.click(); });     // runs once, 250 ms from now
//     job.run();                                             // may yield and wait
//     loop.advance(5s);                                      // 5 idle seconds: timers run
//     EXPECT_THROW(window.close(), ProgramEnded);            // endProgram() throws this
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
/// no `catch (const std::exception&)` treats it as a failure.
struct ProgramEnded {};

/// A wait throws this exception if no event can become due. A wait also throws it if the next event
/// becomes due more than `longestWait` after the beginning of the wait. yield() throws it if
/// yield() is called more than 1,000,000 times without an advance of the time.
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
            throw WaitNeverEnds("yield() was called more than 1,000,000 times while the time did "
                                "not advance; wait with waitWhile or waitFor instead");
        }
        // The next yield handles the events that become due during this round.
        const auto round = due(now_);
        for (const auto& entry : round) {
            run(entry);
        }
    }

    /// Handles one event after another and evaluates the condition after each event. If no event is
    /// due, the time advances to the next event. Each event counts as one yield.
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
                throw WaitNeverEnds("the wait's condition holds, but no event can become due");
            }
            if (next->due > deadline) {
                throw WaitNeverEnds("the wait would last longer than longestWait");
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

    // --- set by the test -------------------------------------------------------------------

    /// Runs `action` once inside the n-th yield from now (1 is the next yield), before the events
    /// that are due.
    void atYield(int n, std::function<void()> action) {
        yieldActions_.emplace(yieldCount_ + n, std::move(action));
    }
    /// Runs `action` once, as an event that becomes due `delay` from now.
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

    // --- read by the test ------------------------------------------------------------------

    /// Number of yields so far; each event that a wait handles counts as one.
    [[nodiscard]] int yieldCount() const { return yieldCount_; }
    /// True after endProgram() was called.
    [[nodiscard]] bool ended() const { return ended_; }
    /// Number of yields that were called after the end of the program. A correct program calls
    /// none. Waits that are called after the end return at once and are not counted.
    [[nodiscard]] int yieldsAfterEnd() const { return yieldsAfterEnd_; }
    /// Number of existing Wakeup objects (results of every()), for example those of enabled timers
    /// and of running waitFor() calls. waitWhile() itself creates none.
    [[nodiscard]] std::size_t wakeupCount() const {
        return static_cast<std::size_t>(
            std::count_if(entries_.begin(), entries_.end(), [](const auto& entry) {
                return entry->active && entry->interval.count() > 0;
            }));
    }

    /// A longer wait throws WaitNeverEnds. A day is far longer than any disc plays.
    Duration longestWait = std::chrono::hours(24);

  private:
    struct Entry {
        Time due;
        Duration interval; ///< 0: the handler runs only once
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

    /// The maximum number of calls of yield() without an advance of the time; the next such call
    /// throws WaitNeverEnds. Every loop of the program makes far fewer; a test that makes more
    /// fails within a second.
    static constexpr int maximumYieldsWithoutTime = 1'000'000;

    /// Counts the yield and runs the actions that the test has set for it. Returns false after the
    /// end of the program.
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

    /// The entry that is due first, of equal ones the entry that was added first. Skips entries
    /// that are running. Null if no entry is left.
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
        // An earlier handler of the same yield may have cancelled this entry, may have run it in a
        // nested yield, or may have ended the program.
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

    /// The destructor runs at the end of a handler, also after an exception. It drops the ticks
    /// that became due while the handler ran.
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

    /// Starts at an arbitrary value other than 0, so that code that assumes a start at 0 fails.
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
