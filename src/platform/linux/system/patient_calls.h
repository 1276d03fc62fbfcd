// SPDX-License-Identifier: GPL-3.0-or-later
// Makes calls that access an object (a mount, a directory service), which is identified by a name.
// The caller waits at most a fixed time for each call. waiting/blocking_calls.h describes what
// happens to calls that hang.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>

#include "platform/linux/waiting/blocking_calls.h"

namespace sonarith::system_information {

/// Must be used only on the logic thread.
class PatientCalls {
  public:
    /// `threads` and `waiting` must outlive these PatientCalls.
    PatientCalls(waiting::WorkerThreads& threads, Waiting& waiting, Waiting::Duration patience)
        : threads_(threads), waiting_(waiting), patience_(patience) {}

    /// Calls `question`, which must return a std::optional, and returns the result of `question`.
    /// Returns empty if `question` does not return within `patience`. Returns empty at once while
    /// an earlier question to the same object has not returned. So an object that does not respond
    /// blocks only one thread. `question` must own everything that it accesses.
    template <typename Question>
    [[nodiscard]] auto ask(const std::string& object, Question question) {
        removeReturnedCalls();
        waiting::BlockingCalls& calls =
            unanswered_.try_emplace(object, threads_, waiting_).first->second;
        auto answer = calls.ask(patience_, std::move(question));
        return answer ? std::move(*answer) : decltype(question())();
    }

    /// The number of objects that have not replied yet; each blocks one thread.
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
    /// The objects whose call has not returned, and those that removeReturnedCalls() has not
    /// removed yet.
    std::map<std::string, waiting::BlockingCalls> unanswered_;
};

} // namespace sonarith::system_information
