// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/waiting/blocking_calls.h"

#include <deque>
#include <mutex>

namespace sonarith::waiting {

struct BlockingCalls::Queue {
    struct Entry {
        Call call;
        std::shared_ptr<Completion> returned;
    };

    /// The job of a worker thread: runs all queued calls, including those that are added while it
    /// runs, and signals the end of each call but the last. Returns the completion of the last
    /// call, on which the caller must call complete(); null if the queue was empty.
    std::shared_ptr<Completion> carryOut() {
        std::shared_ptr<Completion> before;
        for (;;) {
            Entry entry;
            {
                const std::lock_guard lock(mutex);
                if (entries.empty()) {
                    running = false;
                    return before;
                }
                entry = std::move(entries.front());
                entries.pop_front();
            }
            if (before) {
                before->complete();
            }
            entry.call();
            entry.call = nullptr; // destroys what the call owns before the call's end is signalled
            before = std::move(entry.returned);
        }
    }

    std::mutex mutex;
    std::deque<Entry> entries;        ///< calls that have not started
    bool running = false;             ///< a thread is running the calls
    std::shared_ptr<Completion> last; ///< of the most recently added call
};

BlockingCalls::BlockingCalls(WorkerThreads& threads, Waiting& waiting)
    : threads_(threads), waiting_(waiting), queue_(std::make_shared<Queue>()) {}

BlockingCalls::~BlockingCalls() {
    // `dropped` is declared before the lock, so that the calls in it are destroyed after the
    // unlock: the destructors of what a call owns may be slow.
    std::deque<Queue::Entry> dropped;
    const std::lock_guard lock(queue_->mutex);
    dropped.swap(queue_->entries);
}

bool BlockingCalls::idle() const {
    const std::lock_guard lock(queue_->mutex);
    return !queue_->running;
}

BlockingCalls::CommandState BlockingCalls::send(Duration bound, Call command) {
    const auto returned = std::make_shared<Completion>();
    bool begun = false;
    {
        const std::lock_guard lock(queue_->mutex);
        if (queue_->running && queue_->entries.size() >= mostWaiting) {
            return CommandState::refused;
        }
        queue_->entries.push_back({std::move(command), returned});
        queue_->last = returned;
        begun = std::exchange(queue_->running, true);
    }
    if (!begun) {
        const auto last = std::make_shared<std::shared_ptr<Completion>>();
        if (!threads_.run([queue = queue_, last] { *last = queue->carryOut(); },
                          [last] {
                              if (*last) {
                                  (*last)->complete();
                              }
                          })) {
            const std::lock_guard lock(queue_->mutex);
            queue_->entries.clear();
            queue_->running = false;
            return CommandState::refused;
        }
    }
    return waiting_.wait(*returned, bound) == Waiting::Outcome::done ? CommandState::done
                                                                     : CommandState::waits;
}

bool BlockingCalls::finish(Duration bound) {
    std::shared_ptr<Completion> last;
    {
        const std::lock_guard lock(queue_->mutex);
        if (!queue_->running) {
            return true;
        }
        last = queue_->last;
    }
    return waiting_.wait(*last, bound) == Waiting::Outcome::done;
}

} // namespace sonarith::waiting
