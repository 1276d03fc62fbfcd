// SPDX-License-Identifier: GPL-3.0-or-later
// Calls to the machine's files for the thread of the logic, which must not be held up by a disk or
// server that does not answer: each runs on another thread and is waited for with a bound. A mount
// that has not answered is not asked again until it has; nor is a path whose call hangs for another
// reason (a folder with a link to such a mount). What is asked stands in patient_file_system.h and
// patient_directories.h.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/paths/machine_files.h"
#include "platform/linux/paths/patient_place.h"
#include "platform/linux/waiting/blocking_calls.h"
#include "platform/linux/waiting/services.h"

namespace sonarith {

/// How PatientPaths comes to the machine's files; tests put others here.
struct PathAccess {
    /// Makes the files with fresh state; called on any thread.
    std::function<std::shared_ptr<MachineFiles>()> make;
    /// Called on the thread of the logic after each call that was answered: brings to the settings
    /// store what the call had to store.
    std::function<void()> afterCall;
    PlaceAccess places;
};

/// For the thread of the logic. A call that is not answered may still be carried out later.
class PatientPaths {
  public:
    /// A disk that sleeps takes up to ten seconds to spin up. The windows are painted meanwhile,
    /// and closing one ends the wait.
    static constexpr Waiting::Duration usualBound{12000};
    /// To find out which mount does not answer, once one has not: it hangs at once, or it has come
    /// back.
    static constexpr Waiting::Duration searchBound{1000};
    /// Calls that are left behind, at most. Two hang for each mount that does not answer.
    static constexpr std::size_t mostLeftBehind = 16;

    PatientPaths(PathAccess access, waiting::Services services,
                 Waiting::Duration bound = usualBound);
    ~PatientPaths();
    PatientPaths(const PatientPaths&) = delete;
    PatientPaths& operator=(const PatientPaths&) = delete;

    /// The answer to `question`, which is asked with a MachineFiles& and has to do with `paths`:
    /// whole paths of the logic. Empty if none has come within the bound, and at once for a path on
    /// a mount that has not answered before, or that itself has not been answered for. The question
    /// must own all that it touches.
    template <typename Question>
    [[nodiscard]] auto ask(const std::vector<std::string>& paths, Question question) {
        using Answer = decltype(question(std::declval<MachineFiles&>()));
        const auto answer = std::make_shared<std::optional<Answer>>();
        const bool came = carryOut(
            paths, [answer, question = std::move(question)](MachineFiles& machine) mutable {
                answer->emplace(question(machine));
            });
        return came ? std::move(*answer) : std::nullopt;
    }

    [[nodiscard]] const waiting::Services& services() const { return services_; }
    [[nodiscard]] Waiting::Duration bound() const { return bound_; }

  private:
    using Job = std::function<void(MachineFiles&)>;

    /// One after the other, calls to one object with the machine's files.
    struct Lane;
    /// Finds the mount that hangs.
    class Search;
    /// A lane whose call was not answered.
    struct LeftBehind {
        std::unique_ptr<Lane> lane;
        std::vector<std::string> paths; ///< what the call had to do with
        std::shared_ptr<const Search> search;
    };

    [[nodiscard]] bool carryOut(const std::vector<std::string>& paths, Job job);
    void leaveBehind(const std::vector<std::string>& paths);
    [[nodiscard]] std::shared_ptr<const Search> search(const std::vector<std::string>& paths);
    void forgetWhatHasReturned();
    [[nodiscard]] bool isUnanswered(const std::vector<std::string>& paths) const;
    [[nodiscard]] std::set<std::string> mountsThatHang() const;
    [[nodiscard]] std::unique_ptr<Lane> makeLane();

    const PathAccess access_;
    const waiting::Services services_;
    const Waiting::Duration bound_;
    std::unique_ptr<Lane> lane_;
    std::vector<LeftBehind> left_;
    std::set<std::string> reported_; ///< mounts of which the user was told that they hang
};

} // namespace sonarith
