// SPDX-License-Identifier: GPL-3.0-or-later
// Questions to things that may never answer (a mount whose server is gone): each is waited for a
// bounded time on a thread of its own. Not for work that must be done: an answer that is late is
// dropped.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace sonarith::system_information {

/// Belongs to one thread. One idle thread serves all questions; a thing that does not answer keeps
/// the thread that asked it, and the next question starts another.
class PatientCalls {
  public:
    explicit PatientCalls(std::chrono::milliseconds patience) : patience_(patience) {}
    /// Leaves behind the threads that wait for an answer.
    ~PatientCalls();
    PatientCalls(const PatientCalls&) = delete;
    PatientCalls& operator=(const PatientCalls&) = delete;

    /// What `question` returns, a std::optional; empty if it does not return within the patience,
    /// and at once while an earlier question to the same thing has not returned. `question` must
    /// own all that it touches, as it may outlive this.
    template <typename Question>
    [[nodiscard]] auto ask(const std::string& thing, Question question) {
        using Answer = decltype(question());
        const auto answer = std::make_shared<Answer>();
        const bool came =
            callWithin(thing, [answer, question = std::move(question)] { *answer = question(); });
        return came ? std::move(*answer) : Answer();
    }

    /// Things that have not answered yet, each of which holds one thread.
    [[nodiscard]] std::size_t unanswered();

  private:
    struct Worker;

    [[nodiscard]] bool callWithin(const std::string& thing, std::function<void()> call);
    void takeBackThoseThatAnswered();

    std::chrono::milliseconds patience_;
    std::shared_ptr<Worker> idle_;                        ///< none before the first question
    std::map<std::string, std::shared_ptr<Worker>> late_; ///< by what they wait for
};

} // namespace sonarith::system_information
