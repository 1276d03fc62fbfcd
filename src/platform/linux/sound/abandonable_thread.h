// SPDX-License-Identifier: GPL-3.0-or-later
// A thread for device calls that may never return (a hung sound server): its owner waits for it a
// moment and then leaves it behind. Not for work whose completion must be certain.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "platform/result.h"
#include "platform/thread_start.h"

namespace sonarith::sound {

class AbandonableThread {
  public:
    AbandonableThread() = default;
    ~AbandonableThread();
    AbandonableThread(const AbandonableThread&) = delete;
    AbandonableThread& operator=(const AbandonableThread&) = delete;

    /// Runs `body`, which must own (by shared pointers or copies) everything that it accesses, as
    /// it may outlive its creator. A failure is that of `starter`; `start` may be called again
    /// then. Precondition: no thread was started before.
    [[nodiscard]] Status start(std::function<void()> body,
                               const ThreadStarter& starter = startThread);
    /// Whether a thread was started.
    [[nodiscard]] bool started() const { return state_ != nullptr; }

    /// Waits at most `patience` until the body has returned; then the thread is detached. Ask the
    /// body to end before this call. Without effect if no thread was started.
    void leave(std::chrono::milliseconds patience);

  private:
    struct State;
    std::shared_ptr<State> state_;
    bool left_ = false;
};

} // namespace sonarith::sound
