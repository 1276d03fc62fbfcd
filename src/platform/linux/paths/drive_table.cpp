// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/drive_table.h"

#include <algorithm>

#include "platform/linux/paths/path_names.h"

namespace sonarith {

namespace {

constexpr char rootLetter = 'C';
constexpr char firstLetter = 'D';
constexpr char lastLetter = 'Z';

char upperLetter(char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

} // namespace

std::string storedMountPoint(const SettingsStore& store, char letter) {
    const std::string stored =
        store.GetSetting(applicationName, drivesSection, std::string(1, letter), "");
    // This program stores only absolute paths here. A letter with any other value counts as free.
    return stored.starts_with('/') ? stored : std::string();
}

std::optional<char> storedLetterOf(const SettingsStore& store, const std::string& mountPoint) {
    for (char letter = firstLetter; letter <= lastLetter; ++letter) {
        if (letter != homeLetter && storedMountPoint(store, letter) == mountPoint) {
            return letter;
        }
    }
    return std::nullopt;
}

std::optional<char> assignLetter(SettingsStore& store, const std::string& mountPoint) {
    if (const auto stored = storedLetterOf(store, mountPoint)) {
        return stored;
    }
    const auto unused = storedLetterOf(store, "");
    if (unused) {
        store.SaveSetting(applicationName, drivesSection, std::string(1, *unused), mountPoint);
    }
    return unused;
}

DriveTable::DriveTable(SettingsStore& store, std::string_view home)
    : store_(store), home_(plainMachinePath(home)) {
    if (home_ == "/") {
        home_.clear();
    }
    clear();
}

void DriveTable::clear() {
    drives_ = {{rootLetter, "/"}};
    if (!home_.empty()) {
        drives_.push_back({homeLetter, home_});
    }
}

void DriveTable::update(const std::vector<MountPoint>& mounts) {
    clear();
    for (const MountPoint& mount : mounts) {
        if (mount.path == "/") {
            continue;
        }
        const auto letter = mount.path == home_ ? storedLetterOf(store_, mount.path)
                                                : assignLetter(store_, mount.path);
        if (letter) {
            drives_.push_back({*letter, mount.path});
        }
    }
    std::sort(drives_.begin(), drives_.end(),
              [](const Drive& a, const Drive& b) { return a.letter < b.letter; });
}

std::optional<std::string> DriveTable::mountPointOf(char letter) const {
    const auto found = std::find_if(drives_.begin(), drives_.end(), [&](const Drive& drive) {
        return drive.letter == upperLetter(letter);
    });
    return found == drives_.end() ? std::nullopt : std::optional(found->mountPoint);
}

const Drive& DriveTable::driveOf(std::string_view machinePath) const {
    const Drive* deepest = &drives_.front(); // C:, the root, contains every path
    for (const Drive& drive : drives_) {
        // Mount points of equal length that contain the same path are the same folder; then H: is
        // preferred.
        const std::size_t depth = drive.mountPoint.size();
        const std::size_t deepestYet = deepest->mountPoint.size();
        if (isWithin(machinePath, drive.mountPoint) &&
            (depth > deepestYet || (depth == deepestYet && drive.letter == homeLetter))) {
            deepest = &drive;
        }
    }
    return *deepest;
}

} // namespace sonarith
