// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/patient_place.h"

#include <cstddef>
#include <deque>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <system_error>
#include <utility>

#include "platform/linux/paths/machine_names.h"
#include "platform/linux/paths/path_names.h"
#include "platform/text/unicode.h"

namespace sonarith {

namespace {

// The kernel's limit for the symbolic links in one path (path_resolution(7)).
constexpr int mostLinks = 40;

std::string joined(const std::string& folder, const std::string& name) {
    return folder == "/" ? "/" + name : folder + "/" + name;
}

/// The deepest mount point that contains the path. The comparison is case-insensitive because the
/// machine's spelling of the path is unknown until its mount has been accessed.
std::string mountOf(const std::vector<std::string>& mountPoints, const std::string& path) {
    const std::string folded = caseFolded(path);
    std::string deepest = "/";
    for (const std::string& mount : mountPoints) {
        if (mount.size() > deepest.size() && isWithin(folded, caseFolded(mount))) {
            deepest = mount;
        }
    }
    return deepest;
}

class PlaceWalk {
  public:
    PlaceWalk(const PlaceAccess& access, const std::function<bool(const std::string&)>& mayCall)
        : access_(access), mayCall_(mayCall), mountPoints_(access.mountPoints()) {}

    [[nodiscard]] bool mayCall(const std::string& machinePath) const {
        return mayCall_(mountOf(mountPoints_, machinePath));
    }

    /// The path of `name` in `folder` with all symbolic links followed; empty if mayCall() has
    /// refused a step. Precondition: no part of the path `folder` is a symbolic link.
    std::optional<std::string> follow(const std::string& folder, const std::string& name) {
        std::string at = folder;
        std::deque<std::string> names{name};
        while (!names.empty()) {
            const std::string next = joined(at, names.front());
            names.pop_front();
            if (!mayCall(next)) {
                return std::nullopt;
            }
            const std::optional<std::string> target =
                links_ < mostLinks ? access_.linkTarget(next) : std::nullopt;
            if (!target) {
                at = next;
                continue;
            }
            ++links_;
            // ".." after a link is resolved textually, which is accurate enough to find a mount.
            const std::string whole = target->starts_with('/') ? *target : at + "/" + *target;
            const std::vector<std::string> targets = namesOf(whole, "/");
            names.insert(names.begin(), targets.begin(), targets.end());
            at = "/";
        }
        return at;
    }

  private:
    const PlaceAccess& access_;
    const std::function<bool(const std::string&)>& mayCall_;
    const std::vector<std::string> mountPoints_;
    int links_ = 0;
};

std::vector<std::string> mountPointsOfThisMachine() {
    std::stringstream text;
    text << std::ifstream("/proc/self/mountinfo").rdbuf();
    std::vector<std::string> points;
    for (MountPoint& mount : parseMountInfo(text.str())) {
        points.push_back(std::move(mount.path));
    }
    return points;
}

} // namespace

PlaceAccess placesOfThisMachine() {
    return {mountPointsOfThisMachine, [](const std::string& path) {
                std::error_code none;
                const auto target = std::filesystem::read_symlink(path, none);
                return none ? std::nullopt : std::optional(target.string());
            }};
}

bool walkToPlace(MachineFiles& machine, const PlaceAccess& access, const std::string& path,
                 const std::function<bool(const std::string& mount)>& mayCall) {
    PlaceWalk walk(access, mayCall);
    std::string part = path.substr(0, 2);
    const Result<Located> root = machine.locate(part + "\\");
    if (!root.ok()) {
        return true; // no such drive: no mount will be accessed
    }
    std::string place = root.value().path;
    if (!walk.mayCall(place)) {
        return false;
    }
    for (const std::string& name : namesOf(std::string_view(path).substr(part.size()), "\\/")) {
        part += "\\" + name;
        if (!walk.mayCall(joined(place, machineName(name)))) {
            return false;
        }
        const Result<Located> located = machine.locate(part);
        if (!located.ok() || !located.value().found) {
            return true;
        }
        const std::string& spelled = located.value().path;
        const auto next = walk.follow(place, spelled.substr(spelled.rfind('/') + 1));
        if (!next) {
            return false;
        }
        place = *next;
    }
    return true;
}

} // namespace sonarith
