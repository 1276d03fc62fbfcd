// SPDX-License-Identifier: GPL-3.0-or-later
// The interface through which the logic thread waits for work on another thread. The implementation
// decides whether the windows are painted during a wait. This file starts no work and no thread.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace sonarith {

/// An event that happens once, on another thread.
class Completion {
  public:
    /// May be called on any thread.
    void complete();
    [[nodiscard]] bool isComplete() const;
    /// Blocks until complete() has been called, for `bound` at most. Returns whether complete() has
    /// been called. Handles no input or timers meanwhile. Before it sleeps, the calling thread
    /// yields the processor for about 0.1 ms, or for less on a busy processor. A call to a local
    /// disk usually returns within this time. A sleeping thread wakes up only about 0.05 ms after
    /// complete().
    [[nodiscard]] bool restFor(std::chrono::milliseconds bound) const;

  private:
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::atomic<bool> complete_ = false; ///< atomic: restFor() first reads it without the mutex
};

/// Used on the logic thread only. One wait at a time: an implementation runs no handler of the
/// logic while it waits, so a second wait cannot start.
class Waiting {
  public:
    using Duration = std::chrono::milliseconds;

    enum class Outcome {
        done,  ///< the event has happened
        late,  ///< the event has not happened within the bound
        ended, ///< the program is about to end: the caller must not wait for the event
    };

    /// A wait whose bound is not longer than this only blocks the thread: no window is painted. The
    /// time is too short for the user to notice, and far longer than ordinary calls take.
    static constexpr Duration plainMoment{50};

    virtual ~Waiting() = default;
    /// Waits until the event has happened, for `bound` at most.
    [[nodiscard]] virtual Outcome wait(const Completion& completion, Duration bound) = 0;
};

/// Only blocks the thread, whatever the bound. For programs without windows, and for tests.
class PlainWaiting final : public Waiting {
  public:
    [[nodiscard]] Outcome wait(const Completion& completion, Duration bound) override;
};

} // namespace sonarith
