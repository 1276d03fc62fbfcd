// SPDX-License-Identifier: GPL-3.0-or-later
// Starts threads for calls that may block or never return, and reuses an idle thread.
// blocking_calls.h decides which calls may run concurrently, and waits for them on the logic
// thread.
#pragma once

#include <functional>
#include <memory>

#include "platform/thread_start.h"

namespace sonarith::waiting {

/// Thread-safe.
class WorkerThreads {
  public:
    explicit WorkerThreads(ThreadStarter starter = startThread);
    /// Ends the idle thread. A thread whose job has not returned continues until the job returns.
    ~WorkerThreads();
    WorkerThreads(const WorkerThreads&) = delete;
    WorkerThreads& operator=(const WorkerThreads&) = delete;

    using Job = std::function<void()>;

    /// Runs `job` on the idle thread, or on a new one. The job must own (by shared pointers or
    /// copies) everything that it accesses, because it may outlive this object. One thread stays
    /// idle for the next job; further threads end after their job. `afterwards` runs on the same
    /// thread after the job has been destroyed. If no other thread is idle, this thread already
    /// counts as idle while `afterwards` runs: a job that `afterwards` passes to run() needs no new
    /// thread, and begins on this thread when `afterwards` has returned. Returns false if the
    /// system cannot create a thread; then neither `job` nor `afterwards` runs.
    [[nodiscard]] bool run(Job job, Job afterwards);

  private:
    struct State;
    const ThreadStarter starter_;
    std::shared_ptr<State> state_; ///< shared with the threads
};

} // namespace sonarith::waiting
