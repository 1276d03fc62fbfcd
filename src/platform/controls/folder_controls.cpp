// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/controls/folder_controls.h"

#include <algorithm>

#include "platform/text/unicode.h"

namespace sonarith {

namespace {

/// "c:" for a path on drive C; empty for a path without a drive.
std::string driveOf(const std::string& path) {
    return path.size() >= 2 && path[1] == ':' ? lowerCase(path.substr(0, 2)) : std::string();
}

} // namespace

Result<std::string> DirListBox::folderFor(const std::string& path) const {
    if (path.size() != 2 || driveOf(path).empty()) {
        return directories_.folder(path);
    }
    const auto last = lastOnDrive_.find(driveOf(path).front());
    if (last != lastOnDrive_.end()) {
        if (auto folder = directories_.folder(last->second); folder.ok()) {
            return folder;
        }
    }
    return directories_.folder(path + "\\");
}

Status DirListBox::setPath(const std::string& path) {
    const Result<std::string> folder = folderFor(path);
    if (!folder.ok()) {
        return folder.error();
    }
    if (folder.value() != path_) {
        enterFolder(folder.value());
        run(onChange);
    }
    return {};
}

void DirListBox::atLoad() {
    lastOnDrive_.clear();
    enterFolder(files_.programFolder());
    Control::atLoad();
}

std::vector<std::string> DirListBox::subfolders() const {
    std::vector<std::string> names;
    const auto walk = directories_.startWalk();
    FindRecord record;
    const std::string folder = path_.ends_with('\\') ? path_ : path_ + "\\";
    const FindHandle handle = walk->FindFirst(folder + "*.*", record);
    if (handle == invalidFindHandle) {
        return names;
    }
    do {
        const bool isFolder = (record.attributes & file_attribute::directory) != 0;
        if (isFolder && record.name != "." && record.name != "..") {
            names.push_back(record.name);
        }
    } while (walk->FindNext(handle, record));
    walk->FindClose(handle);
    return names;
}

void DirListBox::enterFolder(const std::string& path) {
    if (const std::string drive = driveOf(path); !drive.empty()) {
        lastOnDrive_[drive.front()] = path;
    }
    assign(path_, path, Property::path);
}

Status DriveListBox::setDrive(const std::string& path) {
    const std::string wanted = driveOf(path);
    const std::vector<std::string> present = drives();
    if (std::find(present.begin(), present.end(), wanted) == present.end()) {
        return {ErrorNumber::deviceUnavailable, "Device unavailable"};
    }
    if (wanted != drive_) {
        assign(drive_, wanted, Property::path);
        run(onChange);
    }
    return {};
}

void DriveListBox::atLoad() {
    drive_ = driveOf(files_.programFolder());
    Control::atLoad();
}

} // namespace sonarith
