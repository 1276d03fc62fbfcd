// SPDX-License-Identifier: GPL-3.0-or-later
// Runs the calls to one object that may hang (a drive, a mount, an open file) on a separate thread,
// one after the other, and waits for them with a bound. It depends neither on what is called nor on
// what the window does during a wait (platform/waiting.h).
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "platform/linux/waiting/worker_threads.h"
#include "platform/waiting.h"

namespace sonarith::waiting {

/// For the thread of the logic. At most one thread hangs per object: a call is refused while the
/// previous one has not returned.
class BlockingCalls {
  public:
    using Duration = Waiting::Duration;
    using Call = std::function<void()>;

    /// Limit of queued commands: a user's repeated clicks must not all be carried out when a drive
    /// responds again.
    static constexpr std::size_t mostWaiting = 4;

    /// Both must outlive this.
    BlockingCalls(WorkerThreads& threads, Waiting& waiting);
    /// Drops calls that have not begun; a running call is left behind.
    ~BlockingCalls();
    BlockingCalls(const BlockingCalls&) = delete;
    BlockingCalls& operator=(const BlockingCalls&) = delete;

    /// The result of `question` if it arrives within the bound; empty at once while an earlier call
    /// has not returned. `question` must own everything that it accesses: it may continue after
    /// this has returned, and its result is then dropped.
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
        done,    ///< carried out
        waits,   ///< queued, and will be carried out
        refused, ///< never carried out: mostWaiting commands are queued already
    };
    /// Queues `command` behind all earlier calls and waits for it within the bound. The command may
    /// also run after this has returned.
    CommandState send(Duration bound, Call command);

    /// Waits for the running calls within the bound. Returns whether all have returned.
    [[nodiscard]] bool finish(Duration bound);

    /// All calls have returned.
    [[nodiscard]] bool idle() const;

  private:
    struct Line;

    WorkerThreads& threads_;
    Waiting& waiting_;
    std::shared_ptr<Line> line_; ///< shared with the thread
};

} // namespace sonarith::waiting
