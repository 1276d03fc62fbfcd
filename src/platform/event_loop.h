// SPDX-License-Identifier: GPL-3.0-or-later
// The event loop of the logic thread. Through this interface the logic yields, waits, reads the
// clock, starts timers and ends the program. Long work runs inside the handler that started it, and
// yields. While a handler runs, other handlers can run only when it yields.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

namespace sonarith {

/// A timer started by EventLoop::every() or everyInSound(). Destroying this object stops the timer.
class Wakeup {
  public:
    virtual ~Wakeup() = default;
};

class EventLoop {
  public:
    using Duration = std::chrono::milliseconds;
    /// Monotonic time since an unspecified origin.
    using Time = std::chrono::milliseconds;

    virtual ~EventLoop() = default;

    /// Handles the events that are due (input, timers, painting), then returns. Cheap enough to be
    /// called at each small step of a job: looks for input and due timers at most once in 0.25 ms.
    virtual void yield() = 0;

    /// Yields while `condition` is true. The condition is evaluated at the beginning and after
    /// events. While no event is due, the thread sleeps.
    virtual void waitWhile(const std::function<bool()>& condition) = 0;

    [[nodiscard]] virtual Time now() const = 0;

    /// Wall-clock seconds since midnight, with fraction.
    [[nodiscard]] virtual double secondsSinceMidnight() const = 0;

    /// Calls `handler` every `interval` (1 ms or more) until the Wakeup is destroyed; the handler
    /// itself may destroy the Wakeup. Until `handler` has returned, it is not called again, and
    /// calls that become due in that time are dropped.
    [[nodiscard]] virtual std::unique_ptr<Wakeup> every(Duration interval,
                                                        std::function<void()> handler) = 0;

    /// As every(), for a handler that shows the sound of the machine and has nothing new to show in
    /// silence. Several calls may be held back and then made in one batch, without the interval
    /// between them. There are as many calls as with every(). The batches may be larger in silence
    /// than in sound. When sound begins, an incomplete batch does not wait for further calls. This
    /// default implementation holds back no call.
    [[nodiscard]] virtual std::unique_ptr<Wakeup> everyInSound(Duration interval,
                                                               std::function<void()> handler) {
        return every(interval, std::move(handler));
    }

    /// Ends the process from any depth of nested handlers, waits and message boxes. No code of the
    /// logic runs afterwards, and the call neither yields nor returns.
    [[noreturn]] virtual void endProgram() = 0;

    /// Yields until `duration` has passed. Returns at once if it is 0 or less.
    void waitFor(Duration duration);
};

} // namespace sonarith
