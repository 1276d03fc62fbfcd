// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/patient_paths.h"

#include <algorithm>
#include <mutex>

namespace sonarith {

namespace {

std::string causeOf(const std::string& mount) {
    return "mount " + mount;
}

} // namespace

/// Walks along the paths, step by step, and stores the mount that the current step accesses. While
/// a step hangs, the logic thread reads the stored mount.
class PatientPaths::Search {
  public:
    void run(MachineFiles& machine, const PlaceAccess& places,
             const std::vector<std::string>& paths) {
        const auto note = [this](const std::string& mount) {
            set(mount);
            return true;
        };
        for (const std::string& path : paths) {
            static_cast<void>(walkToPlace(machine, places, path, note));
        }
        set(""); // all mounts have responded
    }
    /// The mount that hangs; empty if no mount hangs.
    [[nodiscard]] std::string mount() const {
        const std::lock_guard lock(mutex_);
        return mount_;
    }

  private:
    void set(const std::string& mount) {
        const std::lock_guard lock(mutex_);
        mount_ = mount;
    }

    mutable std::mutex mutex_;
    std::string mount_;
};

struct PatientPaths::Lane {
    Lane(waiting::WorkerThreads& threads, Waiting& waiting) : calls(threads, waiting) {}

    /// The inner pointer is null until the lane's first call creates the MachineFiles object. This
    /// object is created and used only in `calls`, which run one after the other.
    std::shared_ptr<std::shared_ptr<MachineFiles>> machine =
        std::make_shared<std::shared_ptr<MachineFiles>>();
    waiting::BlockingCalls calls;
};

PatientPaths::PatientPaths(PathAccess access, waiting::Services services, Waiting::Duration bound)
    : access_(std::move(access)), services_(services), bound_(bound), lane_(makeLane()) {}

PatientPaths::~PatientPaths() = default;

std::unique_ptr<PatientPaths::Lane> PatientPaths::makeLane() {
    return std::make_unique<Lane>(services_.threads, services_.waiting);
}

bool PatientPaths::carryOut(Waiting::Duration bound, const Concerned& concerned, Job job) {
    removeReturnedCalls();
    const std::vector<std::string> paths = concerned();
    if (left_.size() >= mostLeftBehind || isUnanswered(paths)) {
        return false;
    }
    const auto refused = std::make_shared<bool>(false);
    auto call = [machine = lane_->machine, make = access_.make, places = access_.places,
                 hanging = mountsThatHang(), paths, refused, job = std::move(job)] {
        if (!*machine) {
            *machine = make();
        }
        const auto mayCall = [&](const std::string& mount) {
            return !hanging.contains(mount);
        };
        // Following a path takes longer than most calls, so it is done only while a mount hangs.
        *refused = !hanging.empty() &&
                   !std::all_of(paths.begin(), paths.end(), [&](const std::string& path) {
                       return walkToPlace(**machine, places, path, mayCall);
                   });
        if (!*refused) {
            job(**machine);
        }
    };
    if (lane_->calls.send(bound, std::move(call)) != waiting::BlockingCalls::CommandState::done) {
        leaveBehind(bound, concerned());
        return false;
    }
    access_.afterCall();
    return !*refused;
}

void PatientPaths::leaveBehind(Waiting::Duration bound, const std::vector<std::string>& paths) {
    std::unique_ptr<Lane> left = std::exchange(lane_, makeLane());
    const auto found = search(bound, paths);
    left_.push_back({std::move(left), paths, found});
    if (!lane_->calls.idle()) { // the search hangs, too
        left_.push_back({std::exchange(lane_, makeLane()), paths, found});
    }
    const std::string mount = found->mount();
    if (!mount.empty() && reported_.insert(mount).second) {
        services_.notices.report(
            {"The disk or server at " + mount + " does not respond.", causeOf(mount)});
    }
}

std::shared_ptr<const PatientPaths::Search>
PatientPaths::search(Waiting::Duration bound, const std::vector<std::string>& paths) {
    const auto search = std::make_shared<Search>();
    lane_->calls.send(std::min(bound, searchBound), [machine = lane_->machine, make = access_.make,
                                                     places = access_.places, paths, search] {
        if (!*machine) {
            *machine = make();
        }
        search->run(**machine, places, paths);
    });
    return search;
}

void PatientPaths::removeReturnedCalls() {
    std::erase_if(left_, [](const LeftBehind& left) { return left.lane->calls.idle(); });
    const std::set<std::string> hanging = mountsThatHang();
    std::erase_if(reported_, [&](const std::string& mount) {
        if (hanging.contains(mount)) {
            return false;
        }
        services_.notices.settled(causeOf(mount),
                                  "The disk or server at " + mount + " responds again.");
        return true;
    });
}

/// Paths are compared as text: a call with another spelling of the same path is not refused here,
/// and if it hangs, the logic waits for it, too.
bool PatientPaths::isUnanswered(const std::vector<std::string>& paths) const {
    return std::any_of(left_.begin(), left_.end(), [&](const LeftBehind& left) {
        return std::find_first_of(paths.begin(), paths.end(), left.paths.begin(),
                                  left.paths.end()) != paths.end();
    });
}

std::set<std::string> PatientPaths::mountsThatHang() const {
    std::set<std::string> mounts;
    for (const LeftBehind& left : left_) {
        if (const std::string mount = left.search->mount(); !mount.empty()) {
            mounts.insert(mount);
        }
    }
    return mounts;
}

} // namespace sonarith
