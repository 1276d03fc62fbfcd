// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/waiting/worker_threads.h"

#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

namespace sonarith::waiting {

struct WorkerThreads::State {
    struct Work {
        Job job;
        Job afterwards;
    };

    std::mutex mutex;
    std::condition_variable changed;
    std::optional<Work> next; ///< the work that the idle thread takes next
    /// A thread waits for `next`, or will wait for it when its `afterwards` has returned.
    bool idle = false;
    bool quitting = false;

    /// The function of each thread; `work` is its first work.
    void carryOut(Work work) {
        for (;;) {
            work.job();
            work.job = nullptr; // destroys what the job owns before `afterwards` runs
            std::unique_lock lock(mutex);
            const bool stays = !idle && !quitting;
            idle = idle || stays;
            lock.unlock();
            work.afterwards();
            work.afterwards = nullptr;
            if (!stays) {
                return;
            }
            lock.lock();
            changed.wait(lock, [this] { return next || quitting; });
            idle = false;
            if (!next) {
                return;
            }
            work = std::move(*next);
            next.reset();
        }
    }
};

WorkerThreads::WorkerThreads(ThreadStarter starter)
    : starter_(std::move(starter)), state_(std::make_shared<State>()) {}

WorkerThreads::~WorkerThreads() {
    const std::lock_guard lock(state_->mutex);
    state_->quitting = true;
    state_->changed.notify_all();
}

bool WorkerThreads::run(Job job, Job afterwards) {
    State::Work work{std::move(job), std::move(afterwards)};
    {
        const std::lock_guard lock(state_->mutex);
        if (state_->idle && !state_->next) {
            state_->next = std::move(work);
            state_->changed.notify_one();
            return true;
        }
    }
    Result<std::thread> thread = starter_(
        [state = state_, first = std::move(work)]() mutable { state->carryOut(std::move(first)); });
    if (thread.ok()) {
        thread.value().detach();
    }
    return thread.ok();
}

} // namespace sonarith::waiting
