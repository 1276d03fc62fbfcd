// SPDX-License-Identifier: GPL-3.0-or-later
// The two controls with which a user chooses a folder: the list of folders and the list of drives.
// Each stands on something that exists; what exists they ask of directory_walk.h.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/controls/control.h"
#include "platform/directory_walk.h"
#include "platform/file_system.h"
#include "platform/result.h"

namespace sonarith {

/// A list of folders that stands in one of them.
class DirListBox : public Control {
  public:
    /// `directories` and `files` outlive this. At each load it stands in the program's folder. Not
    /// in the current one: a destination that could not be made leaves that at the root of a drive,
    /// and a search from there would walk all of it.
    DirListBox(Form& owner, std::string name, Directories& directories, const FileSystem& files)
        : Control(owner, std::move(name)), directories_(directories), files_(files) {}

    /// Without a backslash at its end but for the root of a drive.
    [[nodiscard]] const std::string& path() const { return path_; }
    /// Errors: pathNotFound, which leaves it where it stands. A drive alone ("d:") means the folder
    /// of that drive in which it stood last, or else the drive's root.
    Status setPath(const std::string& path);
    /// The folders in the one in which it stands, in no particular order, by their names. Empty for
    /// a folder that cannot be read. It does not yield.
    [[nodiscard]] std::vector<std::string> subfolders() const;

    /// The path has become another one.
    Handler<> onChange;

  protected:
    void atLoad() override;

  private:
    [[nodiscard]] Result<std::string> folderFor(const std::string& path) const;
    void standIn(const std::string& path);

    Directories& directories_;
    const FileSystem& files_;
    std::string path_;
    std::map<char, std::string> lastOnDrive_; ///< by lower-case letter
};

/// A list of drives, one of them chosen.
class DriveListBox : public Control {
  public:
    /// `directories` and `files` outlive this. At each load it stands on the drive of the program's
    /// folder.
    DriveListBox(Form& owner, std::string name, const Directories& directories,
                 const FileSystem& files)
        : Control(owner, std::move(name)), directories_(directories), files_(files) {}

    /// Letter and colon, lower case.
    [[nodiscard]] const std::string& drive() const { return drive_; }
    /// A drive or a path on it: the letter counts. Errors: deviceUnavailable, and no change, if
    /// there is no such drive.
    Status setDrive(const std::string& path);
    /// All drives that exist now.
    [[nodiscard]] std::vector<std::string> drives() const { return directories_.drives(); }

    /// The drive has become another one.
    Handler<> onChange;

  protected:
    void atLoad() override;

  private:
    const Directories& directories_;
    const FileSystem& files_;
    std::string drive_;
};

} // namespace sonarith
