// SPDX-License-Identifier: GPL-3.0-or-later
// The real event loop, on Qt's. It needs the one QApplication to exist; it owns no window and
// knows none. For use on the user-interface thread alone.
#pragma once

#include <functional>
#include <memory>

#include "platform/event_loop.h"

namespace sonarith {

class QtEventLoop : public EventLoop {
  public:
    QtEventLoop();

    /// What endProgram does before the process goes: stop threads, close devices. It must not
    /// yield.
    void setLastSteps(std::function<void()> lastSteps) { lastSteps_ = std::move(lastSteps); }

    /// Runs the program: handles events until endProgram. Windows that are all closed or hidden
    /// do not end it.
    void run();

    void yield() override;
    void waitWhile(const std::function<bool()>& condition) override;
    [[nodiscard]] Time now() const override;
    [[nodiscard]] double secondsSinceMidnight() const override;
    [[nodiscard]] std::unique_ptr<Wakeup> every(Duration interval,
                                                std::function<void()> handler) override;
    [[noreturn]] void endProgram() override;

  private:
    std::function<void()> lastSteps_;
    int waitDepth_ = 0; // how many waits stand within each other
};

} // namespace sonarith
