// SPDX-License-Identifier: GPL-3.0-or-later
// Runs file calls for the logic thread. A disk or server that does not respond must not
// block this thread: each call runs on another thread, and the logic waits only a limited time. A
// call that times out is left behind: nothing waits for it any more, and its MachineFiles object is
// not used again. PatientPaths then searches for the mount that does not respond: a second call,
// with its own short bound, follows the first call's paths step by step. Until the first call has
// returned, no other call is made to that mount or with one of these paths. Refusing calls by mount
// alone would not be enough. A call for a folder may hang at an entry of this folder, for example
// at a link to a mount that does not respond. The search does not follow entries, so it then finds
// no mount. The file calls themselves are in patient_file_system.h, patient_directories.h and
// patient_walk.h.
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

/// How PatientPaths accesses the machine; tests replace it.
struct PathAccess {
    /// Creates a new MachineFiles object; called on any thread.
    std::function<std::shared_ptr<MachineFiles>()> make;
    /// Writes the changed drive letters to the settings store. Called on the logic thread
    /// after each call that returned in time.
    std::function<void()> afterCall;
    PlaceAccess places;
};

/// For the logic thread. A call that times out may still be carried out later.
class PatientPaths {
  public:
    /// A sleeping disk takes up to ten seconds to spin up. During a wait the windows are repainted,
    /// and closing a window ends the wait.
    static constexpr Waiting::Duration usualBound{12000};
    /// The bound for the search that follows a timeout and finds the mount that does not respond.
    /// Before each step the search stores the mount that the step accesses. The step that hangs is
    /// the one to the mount that does not respond, so the stored mount is the result. The steps
    /// before the one that hangs take little time, so this bound can be short. If all mounts
    /// respond again, the search ends and finds no mount. If the bound of the timed-out call is
    /// shorter, that bound is used instead.
    static constexpr Waiting::Duration searchBound{1000};
    /// While at least this many calls are left behind, no further call is made. A timeout can
    /// leave two calls behind: the timed-out call and its search. So up to 17 calls can be left
    /// behind: 15 and two more.
    static constexpr std::size_t mostLeftBehind = 16;

    PatientPaths(PathAccess access, waiting::Services services,
                 Waiting::Duration bound = usualBound);
    ~PatientPaths();
    PatientPaths(const PatientPaths&) = delete;
    PatientPaths& operator=(const PatientPaths&) = delete;

    using Concerned = std::function<std::vector<std::string>()>;

    /// Calls `question` with a MachineFiles& and returns its result. `paths` are the paths of the
    /// logic that the question accesses; each is an absolute path. The result is empty if the call
    /// has not returned when the wait ends (see usualBound). `question` must own all objects that
    /// it uses.
    /// The result is also empty, and `question` is not called, in four cases:
    /// - a mount of one of the paths is known not to respond;
    /// - an earlier call with one of the paths has not returned;
    /// - mostLeftBehind calls are left behind;
    /// - no thread can be started.
    template <typename Question>
    [[nodiscard]] auto ask(const std::vector<std::string>& paths, Question question) {
        return askWithin(bound_, paths, std::move(question));
    }
    /// Like ask(), but with another bound.
    template <typename Question>
    [[nodiscard]] auto askWithin(Waiting::Duration bound, const std::vector<std::string>& paths,
                                 Question question) {
        return askInSteps(
            bound, [&paths] { return paths; }, std::move(question));
    }

    /// Like askWithin(), but for a call of several steps. `concerned` returns the paths of the
    /// step that is running, or of the first step if the call has not begun. It is called on the
    /// logic thread: once before the call (not before each step), and again if the call times out.
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

    /// Whether no call is left behind. A call that was left behind and has returned since then
    /// still counts as left behind until the next call of ask(), askWithin() or askInSteps().
    [[nodiscard]] bool allReturned() const { return left_.empty(); }
    [[nodiscard]] const waiting::Services& services() const { return services_; }
    [[nodiscard]] Waiting::Duration bound() const { return bound_; }

  private:
    using Job = std::function<void(MachineFiles&)>;

    /// Serialises the calls to one MachineFiles object.
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
