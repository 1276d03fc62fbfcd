// SPDX-License-Identifier: GPL-3.0-or-later
// Runs the calls to one object that may hang (a drive, a mount, an open file) on a separate thread,
// one after the other, and waits for each at most a given time. It depends neither on what the
// calls do nor on what the window does during a wait (platform/waiting.h).
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "platform/linux/waiting/worker_threads.h"
#include "platform/waiting.h"

namespace sonarith::waiting {

/// Must be used only on the logic thread. At most one thread hangs for each BlockingCalls object,
/// because its calls run one after the other.
class BlockingCalls {
  public:
    using Duration = Waiting::Duration;
    using Call = std::function<void()>;

    /// Limit of queued commands, so that not all of a user's repeated clicks are executed when a
    /// drive responds again.
    static constexpr std::size_t mostWaiting = 4;

    /// Both arguments must outlive this object.
    BlockingCalls(WorkerThreads& threads, Waiting& waiting);
    /// Drops calls that have not started; a running call continues on its thread.
    ~BlockingCalls();
    BlockingCalls(const BlockingCalls&) = delete;
    BlockingCalls& operator=(const BlockingCalls&) = delete;

    /// Calls `question` and returns its result. Returns empty if the result does not arrive within
    /// `bound` or if the wait is ended. Returns empty at once if an earlier call has not returned
    /// or if no thread can be started. `question` must own everything that it accesses: it may
    /// continue after ask() has returned, and its result is then dropped.
    template <typename Question>
    [[nodiscard]] auto ask(Duration bound, Question question) {
        using Answer = decltype(question());
        const auto answer = std::make_shared<std::optional<Answer>>();
        auto ask = [answer, question = std::move(question)]() mutable {
            answer->emplace(question());
        };
        const bool answered = idle() && send(bound, std::move(ask)) == CommandState::done;
        return answered ? std::move(*answer) : std::nullopt;
    }

    enum class CommandState {
        done,    ///< executed
        waits,   ///< queued or running when the wait ended, at the bound or earlier
        refused, ///< never executed: the queue is full, or no thread can be started
    };
    /// Queues `command` behind all earlier calls and waits for its end, at most `bound`. The
    /// command may still run after send() has returned.
    CommandState send(Duration bound, Call command);

    /// Waits until all calls have returned, for `bound` at most. Returns whether they have.
    [[nodiscard]] bool finish(Duration bound);

    /// Whether all calls have returned.
    [[nodiscard]] bool idle() const;

  private:
    struct Queue;

    WorkerThreads& threads_;
    Waiting& waiting_;
    std::shared_ptr<Queue> queue_; ///< shared with the thread
};

} // namespace sonarith::waiting
