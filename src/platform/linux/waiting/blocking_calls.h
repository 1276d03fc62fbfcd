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

/// For the thread of the logic. At most one thread hangs per object: ask() is refused while an
/// earlier call has not returned.
class BlockingCalls {
  public:
    using Duration = Waiting::Duration;
    using Call = std::function<void()>;

    /// Limit of queued commands, so that not all of a user's repeated clicks are executed when a
    /// drive responds again.
    static constexpr std::size_t mostWaiting = 4;

    /// Both must outlive this.
    BlockingCalls(WorkerThreads& threads, Waiting& waiting);
    /// Drops calls that have not started; a running call continues on its thread.
    ~BlockingCalls();
    BlockingCalls(const BlockingCalls&) = delete;
    BlockingCalls& operator=(const BlockingCalls&) = delete;

    /// Returns the result of `question`; empty if it does not return within the bound, and empty at
    /// once while an earlier call has not returned. `question` must own everything that it
    /// accesses: it may continue after this has returned, and its result is then dropped.
    template <typename Question>
    [[nodiscard]] auto ask(Duration bound, Question question) {
        using Answer = decltype(question());
        const auto answer = std::make_shared<std::optional<Answer>>();
        auto ask = [answer, question = std::move(question)]() mutable {
            answer->emplace(question());
        };
        const bool came = idle() && send(bound, std::move(ask)) == CommandState::done;
        return came ? std::move(*answer) : std::nullopt;
    }

    enum class CommandState {
        done,    ///< executed
        waits,   ///< queued; executed later
        refused, ///< never executed: mostWaiting commands are queued already
    };
    /// Queues `command` behind all earlier calls and waits for it within the bound. The command may
    /// also run after this has returned.
    CommandState send(Duration bound, Call command);

    /// Waits until all calls have returned, for `bound` at most. Returns whether they have.
    [[nodiscard]] bool finish(Duration bound);

    /// Whether all calls have returned.
    [[nodiscard]] bool idle() const;

  private:
    struct Line;

    WorkerThreads& threads_;
    Waiting& waiting_;
    std::shared_ptr<Line> line_; ///< shared with the thread
};

} // namespace sonarith::waiting
