// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/home_letter.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "platform/linux/paths/drive_table.h"
#include "platform/linux/paths/machine_names.h"
#include "platform/linux/paths/path_names.h"

namespace sonarith {

namespace {

constexpr char lowerHomeLetter = 'h';
constexpr std::string_view rootDrive = "C:";

bool hasDrive(std::string_view path) {
    return path.size() >= 2 && path[1] == ':';
}

bool isOnHomeLetter(std::string_view path) {
    return hasDrive(path) && (path[0] == homeLetter || path[0] == lowerHomeLetter);
}

std::string joinedBehind(std::string_view drive, const std::vector<std::string>& names) {
    std::string path(drive);
    for (const std::string& name : names) {
        path.append("\\").append(name);
    }
    return path;
}

/// The text that replaces "H:" in the paths on the mount that had the letter H. It is the mount's
/// new letter, or, if no other letter was free, the path of the mount point on C:.
std::string newStartOf(std::optional<char> letter, const std::string& mountPoint) {
    if (letter) {
        return std::string(1, *letter) + ":";
    }
    std::vector<std::string> names = namesOf(mountPoint, "/");
    std::transform(names.begin(), names.end(), names.begin(), logicName);
    return joinedBehind(rootDrive, names);
}

/// The mount point of a letter; empty for an unassigned letter and for H:.
std::string mountPointOf(const SettingsStore& store, char letter) {
    constexpr char caseBit = 'a' - 'A';
    const char upper =
        letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - caseBit) : letter;
    if (upper == rootDrive[0]) {
        return "/";
    }
    return upper == homeLetter ? std::string() : storedMountPoint(store, upper);
}

/// The path on H: of the file or folder that `path` names by another letter. Empty if `path`
/// already uses H:, or a letter whose mount does not contain the home folder. Also empty if `path`
/// is outside the home folder, or is the home folder itself without a backslash at the end.
std::optional<std::string> byHomeLetter(const SettingsStore& store, std::string_view home,
                                        std::string_view path) {
    const std::string mountPoint = hasDrive(path) ? mountPointOf(store, path[0]) : std::string();
    if (mountPoint.empty() || !isWithin(home, mountPoint)) {
        return std::nullopt;
    }
    const std::vector<std::string> given = namesOf(path.substr(2), "\\/");
    std::vector<std::string> onMachine = namesOf(mountPoint, "/");
    const std::size_t mountDepth = onMachine.size();
    std::transform(given.begin(), given.end(), std::back_inserter(onMachine), machineName);
    const std::vector<std::string> homeNames = namesOf(home, "/");
    const bool inHome = onMachine.size() >= homeNames.size() &&
                        std::equal(homeNames.begin(), homeNames.end(), onMachine.begin());
    const bool endsInBackslash = path.ends_with('\\');
    if (!inHome || (onMachine.size() == homeNames.size() && !endsInBackslash)) {
        return std::nullopt;
    }
    const auto firstBelowHome =
        given.begin() + static_cast<std::ptrdiff_t>(homeNames.size() - mountDepth);
    const std::string start(1, homeLetter);
    return joinedBehind(start + ":", {firstBelowHome, given.end()}) + (endsInBackslash ? "\\" : "");
}

} // namespace

void moveToHomeLetter(SettingsStore& store, std::string_view home,
                      const std::vector<StoredPath>& paths) {
    const std::string key(1, homeLetter);
    const auto changeEach = [&](const auto& changed) {
        for (const StoredPath& stored : paths) {
            const std::string path =
                store.GetSetting(applicationName, stored.section, stored.key, "");
            if (const std::optional<std::string> other = changed(path)) {
                store.SaveSetting(applicationName, stored.section, stored.key, *other);
            }
        }
    };
    const std::string plainHome = plainMachinePath(home);
    if (const std::string moved = storedMountPoint(store, homeLetter); moved == plainHome) {
        // The store assigns H: to the home folder, which is H: even without this entry.
        store.DeleteSetting(applicationName, drivesSection, key);
    } else if (!moved.empty()) {
        const std::string start = newStartOf(assignLetter(store, moved), moved);
        changeEach([&](const std::string& path) {
            return isOnHomeLetter(path) ? std::optional(start + path.substr(2)) : std::nullopt;
        });
        // The entry for H: is deleted only after the paths have been changed: as long as it exists,
        // a call after an interruption changes the remaining paths.
        store.DeleteSetting(applicationName, drivesSection, key);
    }
    if (plainHome != "/") {
        changeEach([&](const std::string& path) { return byHomeLetter(store, plainHome, path); });
    }
}

} // namespace sonarith
