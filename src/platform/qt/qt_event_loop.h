// SPDX-License-Identifier: GPL-3.0-or-later
// Implements EventLoop with Qt's event loop. Requires a QApplication and depends on no window. Use
// it only on the logic thread.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

#include "platform/event_loop.h"

namespace sonarith {

class QtEventLoop : public EventLoop {
  public:
    QtEventLoop();

    /// Sets the function that endProgram() calls before the process exits. The function should stop
    /// threads and close devices, and must not yield.
    void setLastSteps(std::function<void()> lastSteps) { lastSteps_ = std::move(lastSteps); }

    /// Runs the program: handles events until endProgram(). Closing or hiding all windows does not
    /// end the program.
    void run();

    /// Handles the events that are queued in the program. Asks the system for input and timers at
    /// most once in a quarter of a millisecond, because asking takes as long as a short step of the
    /// logic. A search, for example, yields for each file.
    void yield() override;
    void waitWhile(const std::function<bool()>& condition) override;
    [[nodiscard]] Time now() const override;
    [[nodiscard]] double secondsSinceMidnight() const override;
    [[nodiscard]] std::unique_ptr<Wakeup> every(Duration interval,
                                                std::function<void()> handler) override;
    /// If setSilence() has set a function, the calls of `handler` come in batches, which are larger
    /// in silence than in sound (batched_wakeup.h).
    [[nodiscard]] std::unique_ptr<Wakeup> everyInSound(Duration interval,
                                                       std::function<void()> handler) override;
    /// `isSilent` returns whether the machine neither plays nor records anything. The function must
    /// be quick, because it is called often. Without such a function, there are no batches. Applies
    /// to later calls of everyInSound().
    void setSilence(std::function<bool()> isSilent) { isSilent_ = std::move(isSilent); }

    [[noreturn]] void endProgram() override;

  private:
    std::function<void()> lastSteps_;
    std::function<bool()> isSilent_;
    std::chrono::steady_clock::time_point lastAsked_ =
        std::chrono::steady_clock::time_point::min(); ///< when a yield last asked the system
    int waitDepth_ = 0;                               // nesting depth of the waits
};

} // namespace sonarith
