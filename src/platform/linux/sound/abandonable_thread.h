// SPDX-License-Identifier: GPL-3.0-or-later
// A thread for device calls that may never return (a hung sound server): its owner waits for it a
// moment and then leaves it behind. Not for work whose completion must be certain.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace sonarith::sound {

class AbandonableThread {
  public:
    /// Runs `body`, which must own (by shared pointers or copies) everything that it accesses, as
    /// it may outlive its creator.
    explicit AbandonableThread(std::function<void()> body);
    ~AbandonableThread();
    AbandonableThread(const AbandonableThread&) = delete;
    AbandonableThread& operator=(const AbandonableThread&) = delete;

    /// Waits at most `patience` until the body has returned; then the thread is detached. Ask the
    /// body to end before this call.
    void leave(std::chrono::milliseconds patience);

  private:
    struct State;
    std::shared_ptr<State> state_;
    bool left_ = false;
};

} // namespace sonarith::sound
