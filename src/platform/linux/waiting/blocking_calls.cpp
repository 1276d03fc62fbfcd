// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/waiting/blocking_calls.h"

#include <deque>
#include <mutex>

namespace sonarith::waiting {

struct BlockingCalls::Line {
    struct Entry {
        Call call;
        std::shared_ptr<Completion> returned;
    };

    /// Body of a thread's job: runs all calls, including those added meanwhile. Returns the
    /// completion of the last call, which the caller completes; null if the queue was empty.
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
            entry.call = nullptr; // destroys what the call owns before its end is signalled
            before = std::move(entry.returned);
        }
    }

    std::mutex mutex;
    std::deque<Entry> entries;        ///< calls that have not started
    bool running = false;             ///< a thread is running the calls
    std::shared_ptr<Completion> last; ///< of the most recently added call
};

BlockingCalls::BlockingCalls(WorkerThreads& threads, Waiting& waiting)
    : threads_(threads), waiting_(waiting), line_(std::make_shared<Line>()) {}

BlockingCalls::~BlockingCalls() {
    // Destroyed outside the lock: the destructors of what a call owns may be slow.
    std::deque<Line::Entry> dropped;
    const std::lock_guard lock(line_->mutex);
    dropped.swap(line_->entries);
}

bool BlockingCalls::idle() const {
    const std::lock_guard lock(line_->mutex);
    return !line_->running;
}

BlockingCalls::CommandState BlockingCalls::send(Duration bound, Call command) {
    const auto returned = std::make_shared<Completion>();
    bool begun = false;
    {
        const std::lock_guard lock(line_->mutex);
        if (line_->running && line_->entries.size() >= mostWaiting) {
            return CommandState::refused;
        }
        line_->entries.push_back({std::move(command), returned});
        line_->last = returned;
        begun = std::exchange(line_->running, true);
    }
    if (!begun) {
        const auto last = std::make_shared<std::shared_ptr<Completion>>();
        if (!threads_.run([line = line_, last] { *last = line->carryOut(); },
                          [last] {
                              if (*last) {
                                  (*last)->complete();
                              }
                          })) {
            const std::lock_guard lock(line_->mutex);
            line_->entries.clear();
            line_->running = false;
            return CommandState::refused;
        }
    }
    return waiting_.wait(*returned, bound) == Waiting::Outcome::done ? CommandState::done
                                                                     : CommandState::waits;
}

bool BlockingCalls::finish(Duration bound) {
    std::shared_ptr<Completion> last;
    {
        const std::lock_guard lock(line_->mutex);
        if (!line_->running) {
            return true;
        }
        last = line_->last;
    }
    return waiting_.wait(*last, bound) == Waiting::Outcome::done;
}

} // namespace sonarith::waiting
