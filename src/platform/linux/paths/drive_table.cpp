// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/drive_table.h"

#include <algorithm>

namespace sonarith {

namespace {

constexpr char rootLetter = 'C';
constexpr char firstLetter = 'D';
constexpr char lastLetter = 'Z';

char upperLetter(char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

bool holds(std::string_view mountPoint, std::string_view path) {
    return mountPoint == "/" || path == mountPoint ||
           (path.size() > mountPoint.size() && path[mountPoint.size()] == '/' &&
            path.substr(0, mountPoint.size()) == mountPoint);
}

} // namespace

DriveTable::DriveTable(SettingsStore& store) : store_(store), drives_{{rootLetter, "/"}} {}

void DriveTable::update(const std::vector<MountPoint>& mounts) {
    drives_ = {{rootLetter, "/"}};
    for (const MountPoint& mount : mounts) {
        if (mount.path == "/") {
            continue;
        }
        if (const auto letter = letterFor(mount.path)) {
            drives_.push_back({*letter, mount.path});
        }
    }
    std::sort(drives_.begin(), drives_.end(),
              [](const Drive& a, const Drive& b) { return a.letter < b.letter; });
}

std::optional<char> DriveTable::letterFor(const std::string& mountPoint) {
    std::optional<char> unused;
    for (char letter = firstLetter; letter <= lastLetter; ++letter) {
        const std::string stored =
            store_.GetSetting(applicationName, drivesSection, std::string(1, letter), "");
        if (stored == mountPoint) {
            return letter;
        }
        // What is no absolute path was not put there by this program: the letter is free.
        if (!unused && (stored.empty() || stored.front() != '/')) {
            unused = letter;
        }
    }
    if (unused) {
        store_.SaveSetting(applicationName, drivesSection, std::string(1, *unused), mountPoint);
    }
    return unused;
}

std::optional<std::string> DriveTable::mountPointOf(char letter) const {
    const auto found = std::find_if(drives_.begin(), drives_.end(), [&](const Drive& drive) {
        return drive.letter == upperLetter(letter);
    });
    return found == drives_.end() ? std::nullopt : std::optional(found->mountPoint);
}

const Drive& DriveTable::driveOf(std::string_view machinePath) const {
    const Drive* deepest = &drives_.front(); // C:, the root, holds every path
    for (const Drive& drive : drives_) {
        if (holds(drive.mountPoint, machinePath) &&
            drive.mountPoint.size() > deepest->mountPoint.size()) {
            deepest = &drive;
        }
    }
    return *deepest;
}

} // namespace sonarith
