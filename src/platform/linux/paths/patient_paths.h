// SPDX-License-Identifier: GPL-3.0-or-later
// Calls to the machine's files for the thread of the logic, which must not be blocked by a disk or
// server that does not respond: each runs on another thread and is waited for with a bound. A mount
// that has not responded is not called again until it has; nor is a path whose call hangs for
// another reason (a folder with a link to such a mount). The calls themselves are in
// patient_file_system.h and patient_directories.h.
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

/// How PatientPaths creates the machine's files; tests replace it.
struct PathAccess {
    /// Creates the files with fresh state; called on any thread.
    std::function<std::shared_ptr<MachineFiles>()> make;
    /// Called on the thread of the logic after each call that returned in time: writes the call's
    /// changes to the settings store.
    std::function<void()> afterCall;
    PlaceAccess places;
};

/// For the thread of the logic. A call that times out may still be carried out later.
class PatientPaths {
  public:
    /// A sleeping disk takes up to ten seconds to spin up. The windows are repainted meanwhile, and
    /// closing one ends the wait.
    static constexpr Waiting::Duration usualBound{12000};
    /// The bound for finding out which mount does not respond, after a timeout: the search hangs at
    /// once, or the mount has recovered. At most the bound of the call itself.
    static constexpr Waiting::Duration searchBound{1000};
    /// Limit of calls that are left behind. Two hang for each mount that does not respond.
    static constexpr std::size_t mostLeftBehind = 16;

    PatientPaths(PathAccess access, waiting::Services services,
                 Waiting::Duration bound = usualBound);
    ~PatientPaths();
    PatientPaths(const PatientPaths&) = delete;
    PatientPaths& operator=(const PatientPaths&) = delete;

    using Concerned = std::function<std::vector<std::string>()>;

    /// The result of `question`, which is called with a MachineFiles& and concerns `paths`: whole
    /// paths of the logic. Empty if it has not returned within the bound, and at once for a path on
    /// a mount that is known not to respond, or with an earlier call that has not returned. The
    /// question must own everything that it accesses.
    template <typename Question>
    [[nodiscard]] auto ask(const std::vector<std::string>& paths, Question question) {
        return askWithin(bound_, paths, std::move(question));
    }
    /// The same with a bound of its own.
    template <typename Question>
    [[nodiscard]] auto askWithin(Waiting::Duration bound, const std::vector<std::string>& paths,
                                 Question question) {
        return askInSteps(
            bound, [&paths] { return paths; }, std::move(question));
    }

    /// The same for a call of several steps. `concerned` returns the paths of the current step; it
    /// is called before the call and once that has timed out.
    template <typename Question>
    [[nodiscard]] auto askInSteps(Waiting::Duration bound, const Concerned& concerned,
                                  Question question) {
        using Answer = decltype(question(std::declval<MachineFiles&>()));
        const auto answer = std::make_shared<std::optional<Answer>>();
        const bool came =
            carryOut(bound, concerned,
                     [answer, question = std::move(question)](MachineFiles& machine) mutable {
                         answer->emplace(question(machine));
                     });
        return came ? std::move(*answer) : std::nullopt;
    }

    /// No call that timed out is still running.
    [[nodiscard]] bool allReturned() const { return left_.empty(); }
    [[nodiscard]] const waiting::Services& services() const { return services_; }
    [[nodiscard]] Waiting::Duration bound() const { return bound_; }

  private:
    using Job = std::function<void(MachineFiles&)>;

    /// Serialises the calls to one object with the machine's files.
    struct Lane;
    /// Finds the mount that hangs.
    class Search;
    /// A lane whose call timed out.
    struct LeftBehind {
        std::unique_ptr<Lane> lane;
        std::vector<std::string> paths; ///< the paths that the call concerned
        std::shared_ptr<const Search> search;
    };

    [[nodiscard]] bool carryOut(Waiting::Duration bound, const Concerned& concerned, Job job);
    void leaveBehind(Waiting::Duration bound, const std::vector<std::string>& paths);
    [[nodiscard]] std::shared_ptr<const Search> search(Waiting::Duration bound,
                                                       const std::vector<std::string>& paths);
    void removeReturnedCalls();
    [[nodiscard]] bool isUnanswered(const std::vector<std::string>& paths) const;
    [[nodiscard]] std::set<std::string> mountsThatHang() const;
    [[nodiscard]] std::unique_ptr<Lane> makeLane();

    const PathAccess access_;
    const waiting::Services services_;
    const Waiting::Duration bound_;
    std::unique_ptr<Lane> lane_;
    std::vector<LeftBehind> left_;
    std::set<std::string> reported_; ///< mounts that were reported to the user as hanging
};

} // namespace sonarith
