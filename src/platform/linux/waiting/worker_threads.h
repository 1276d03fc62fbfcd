// SPDX-License-Identifier: GPL-3.0-or-later
// Threads for calls that may block, and may never return. It starts them and reuses what is idle;
// which calls may run at the same time, and who waits for them, is decided in blocking_calls.h.
#pragma once

#include <functional>
#include <memory>

namespace sonarith::waiting {

/// Any thread may call the members.
class WorkerThreads {
  public:
    WorkerThreads();
    /// Ends the idle thread. A thread whose job has not returned is left behind.
    ~WorkerThreads();
    WorkerThreads(const WorkerThreads&) = delete;
    WorkerThreads& operator=(const WorkerThreads&) = delete;

    using Job = std::function<void()>;

    /// Runs `job` on the idle thread, or on a new one. The job must own (by shared pointers or
    /// copies) all that it touches, as it may outlive this object. One thread is kept idle; those
    /// beyond it end with their job. `afterwards` runs on the same thread once the job is gone and
    /// the thread can take another: whoever learns from it that the job is done may give the next
    /// one at once, and costs no new thread. False if the system has no thread to give: neither
    /// runs.
    [[nodiscard]] bool run(Job job, Job afterwards);

  private:
    struct State;
    std::shared_ptr<State> state_; ///< shared with the threads
};

} // namespace sonarith::waiting
