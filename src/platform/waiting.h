// SPDX-License-Identifier: GPL-3.0-or-later
// How the logic thread waits for work on another thread. The implementation decides what the window
// does meanwhile. This file does not depend on the work or its thread.
#pragma once

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
    /// Blocks until the event has happened, for `bound` at most. Returns whether it has. Handles no
    /// events.
    [[nodiscard]] bool restFor(std::chrono::milliseconds bound) const;

  private:
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    bool complete_ = false;
};

/// Used on the logic thread only. One wait at a time: an implementation runs no handler of the
/// logic while it waits, so a second wait cannot start.
class Waiting {
  public:
    using Duration = std::chrono::milliseconds;

    enum class Outcome {
        done,  ///< the event has happened
        late,  ///< it has not happened within the bound
        ended, ///< the program is about to end: the caller must not wait for the event
    };

    /// A wait up to this long only blocks: short enough for the user not to notice, and far longer
    /// than ordinary calls take.
    static constexpr Duration plainMoment{50};

    virtual ~Waiting() = default;
    /// Waits until the event has happened, for `bound` at most.
    [[nodiscard]] virtual Outcome wait(const Completion& completion, Duration bound) = 0;
};

/// Only blocks: for programs without windows, and for tests.
class PlainWaiting final : public Waiting {
  public:
    [[nodiscard]] Outcome wait(const Completion& completion, Duration bound) override;
};

} // namespace sonarith
