// SPDX-License-Identifier: GPL-3.0-or-later
// How the thread of the logic waits for work that another thread does. What the window does
// meanwhile is up to the implementation; which work it is, and on which thread, is not known here.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace sonarith {

/// An event that happens once, on another thread.
class Completion {
  public:
    /// For any thread.
    void complete();
    [[nodiscard]] bool isComplete() const;
    /// Rests until the event has happened, for `bound` at most; whether it has. Handles nothing.
    [[nodiscard]] bool restFor(std::chrono::milliseconds bound) const;

  private:
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    bool complete_ = false;
};

/// For the thread of the logic alone. One wait at a time: an implementation runs no handler of the
/// logic while it waits, so none can begin a second wait.
class Waiting {
  public:
    using Duration = std::chrono::milliseconds;

    enum class Outcome {
        done,  ///< the event has happened
        late,  ///< it has not happened within the bound
        ended, ///< the program is about to end: the caller finishes without the event
    };

    /// A wait up to this long is a mere rest: short enough to go unnoticed by the user, and far
    /// longer than what ordinary calls take.
    static constexpr Duration plainMoment{50};

    virtual ~Waiting() = default;
    /// Waits until the event has happened, for `bound` at most.
    [[nodiscard]] virtual Outcome wait(const Completion& completion, Duration bound) = 0;
};

/// Rests only: for programs without windows, and tests.
class PlainWaiting final : public Waiting {
  public:
    [[nodiscard]] Outcome wait(const Completion& completion, Duration bound) override;
};

} // namespace sonarith
