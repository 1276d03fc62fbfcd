// SPDX-License-Identifier: GPL-3.0-or-later
// The real event loop, based on Qt's. It requires the one QApplication and does not depend on any
// window. For use on the user-interface thread only.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "platform/event_loop.h"

namespace sonarith {

class QtEventLoop : public EventLoop {
  public:
    QtEventLoop();

    /// Sets the steps that endProgram() runs before the process exits: stop threads, close devices.
    /// They must not yield.
    void setLastSteps(std::function<void()> lastSteps) { lastSteps_ = std::move(lastSteps); }

    /// Runs the program: handles events until endProgram(). Closing or hiding all windows does not
    /// end it.
    void run();

    /// Asks the system for input and timers at most every quarter of a millisecond, since asking
    /// costs as much as a short step of the logic: a search yields for each file. Events that are
    /// queued in the program are handled at each yield.
    void yield() override;
    void waitWhile(const std::function<bool()>& condition) override;
    [[nodiscard]] Time now() const override;
    [[nodiscard]] double secondsSinceMidnight() const override;
    [[nodiscard]] std::unique_ptr<Wakeup> every(Duration interval,
                                                std::function<void()> handler) override;
    [[noreturn]] void endProgram() override;

  private:
    std::function<void()> lastSteps_;
    std::chrono::steady_clock::time_point lastAsked_ =
        std::chrono::steady_clock::time_point::min(); ///< when a yield last asked the system
    int waitDepth_ = 0;                               // nesting depth of the waits
};

} // namespace sonarith
