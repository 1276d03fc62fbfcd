// SPDX-License-Identifier: GPL-3.0-or-later
// Questions to things by name (a mount, a directory service), each of which is waited for a bounded
// time. How a call that hangs is left behind stands in waiting/blocking_calls.h.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>

#include "platform/linux/waiting/blocking_calls.h"

namespace sonarith::system_information {

/// For the thread of the logic.
class PatientCalls {
  public:
    /// Both outlive this.
    PatientCalls(waiting::WorkerThreads& threads, Waiting& waiting, Waiting::Duration patience)
        : threads_(threads), waiting_(waiting), patience_(patience) {}

    /// What `question` returns, a std::optional; empty if it does not return within the patience,
    /// and at once while an earlier question to the same object has not returned: a object that
    /// does not respond keeps one thread. `question` must own all that it touches.
    template <typename Question>
    [[nodiscard]] auto ask(const std::string& object, Question question) {
        removeReturnedCalls();
        waiting::BlockingCalls& calls =
            unanswered_.try_emplace(object, threads_, waiting_).first->second;
        auto answer = calls.ask(patience_, std::move(question));
        return answer ? std::move(*answer) : decltype(question())();
    }

    /// Things that have not answered yet, each of which holds one thread.
    [[nodiscard]] std::size_t unanswered() {
        removeReturnedCalls();
        return unanswered_.size();
    }

  private:
    void removeReturnedCalls() {
        std::erase_if(unanswered_, [](const auto& entry) { return entry.second.idle(); });
    }

    waiting::WorkerThreads& threads_;
    Waiting& waiting_;
    Waiting::Duration patience_;
    std::map<std::string, waiting::BlockingCalls> unanswered_; ///< and the object asked last
};

} // namespace sonarith::system_information
