// SPDX-License-Identifier: GPL-3.0-or-later
// A thread for calls that may never return, for example calls to a sound server or a disk that
// hangs. The owner waits a limited time for the thread's end, and detaches a thread that has not
// ended by then. The end of the process may interrupt the work of a detached thread.
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
    /// Calls leave(0 ms).
    ~AbandonableThread();
    AbandonableThread(const AbandonableThread&) = delete;
    AbandonableThread& operator=(const AbandonableThread&) = delete;

    /// Runs `body`, which must own (by shared pointers or copies) everything that it accesses,
    /// because the thread may outlive its creator. Fails with the error of `starter`; after a
    /// failure start() may be called again. Precondition: no thread was started before.
    [[nodiscard]] Status start(std::function<void()> body,
                               const ThreadStarter& starter = startThread);
    /// Whether a thread was started.
    [[nodiscard]] bool started() const { return state_ != nullptr; }

    /// Waits at most `patience` for the body to return; if it does not, the thread is detached.
    /// Does not ask the body to end. A call has no effect if no thread was started. A second call
    /// has no effect either.
    void leave(std::chrono::milliseconds patience);

  private:
    struct State;
    std::shared_ptr<State> state_;
    bool left_ = false;
};

} // namespace sonarith::sound
