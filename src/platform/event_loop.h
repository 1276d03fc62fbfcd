// SPDX-License-Identifier: GPL-3.0-or-later
// The one thread's event loop: yields, waits, clock, wake-ups and the end of the program. Long work
// runs inside the handler that began it and yields; this is the only interleaving there is.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace sonarith {

/// A pending call by the loop; destroying it takes the call back.
class Wakeup {
  public:
    virtual ~Wakeup() = default;
};

class EventLoop {
  public:
    using Duration = std::chrono::milliseconds;
    /// Monotonic time since an origin that means nothing.
    using Time = std::chrono::milliseconds;

    virtual ~EventLoop() = default;

    /// Runs what is due (input, timers, painting), then returns.
    virtual void yield() = 0;

    /// Yields for as long as `condition` holds. It is asked again after each handled event; while
    /// no event is due the processor rests.
    virtual void waitWhile(const std::function<bool()>& condition) = 0;

    [[nodiscard]] virtual Time now() const = 0;

    /// Wall-clock seconds since midnight, with their fraction.
    [[nodiscard]] virtual double secondsSinceMidnight() const = 0;

    /// Calls `handler` every `interval` (1 ms or more) until the Wakeup is destroyed, which the
    /// handler itself may do. Never re-enters a handler that has not returned: what fell due in
    /// the meantime is dropped.
    [[nodiscard]] virtual std::unique_ptr<Wakeup> every(Duration interval,
                                                        std::function<void()> handler) = 0;

    /// Ends the process from any depth of nested handlers, waits and message boxes. Nothing of the
    /// logic runs after it, and nothing yields: the call does not return.
    [[noreturn]] virtual void endProgram() = 0;

    /// Yields until `duration` has passed; returns at once if it is not above 0.
    void waitFor(Duration duration);
};

} // namespace sonarith
