// SPDX-License-Identifier: GPL-3.0-or-later
// The calls to one object that may hang (a drive, a mount, an open file): they run on a thread of
// their own, one after the other, and are waited for with a bound. What is called is not known
// here, nor what the window does during a wait (platform/waiting.h).
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "platform/linux/waiting/worker_threads.h"
#include "platform/waiting.h"

namespace sonarith::waiting {

/// For the thread of the logic. Of one object at most one thread hangs, as a call is refused while
/// the one before it has not returned.
class BlockingCalls {
  public:
    using Duration = Waiting::Duration;
    using Call = std::function<void()>;

    /// Commands that wait for their turn, at most: a user's repeated clicks must not all be carried
    /// out when a drive answers again.
    static constexpr std::size_t mostWaiting = 4;

    /// Both outlive this.
    BlockingCalls(WorkerThreads& threads, Waiting& waiting);
    /// Calls that have not begun are dropped, one that is under way is left behind.
    ~BlockingCalls();
    BlockingCalls(const BlockingCalls&) = delete;
    BlockingCalls& operator=(const BlockingCalls&) = delete;

    /// The answer, if it comes within the bound. Empty at once while an earlier call has not
    /// returned. `question` must own all that it touches: it may go on after this has returned, and
    /// its answer is dropped then.
    template <typename Question>
    [[nodiscard]] auto ask(Duration bound, Question question) {
        using Answer = decltype(question());
        const auto answer = std::make_shared<std::optional<Answer>>();
        auto ask = [answer, question = std::move(question)]() mutable {
            answer->emplace(question());
        };
        const bool came = idle() && tell(bound, std::move(ask)) == Told::done;
        return came ? std::move(*answer) : std::nullopt;
    }

    enum class Told {
        done,    ///< carried out
        waits,   ///< not yet carried out, but it will be
        refused, ///< never carried out: mostWaiting commands wait already
    };
    /// Carries `command` out when all calls before it have returned, also after this has returned,
    /// and waits for that within the bound.
    Told tell(Duration bound, Call command);

    /// Waits for the calls that are under way, within the bound; whether all have returned.
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
