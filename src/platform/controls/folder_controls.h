// SPDX-License-Identifier: GPL-3.0-or-later
// The two controls with which the user chooses a folder: the list of folders, which accepts only a
// folder that exists, and the list of drives, which accepts only a drive that exists.
// directory_walk.h determines which folders and drives exist.
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

/// A list of folders with a current folder.
class DirListBox : public Control {
  public:
    /// `directories` and `files` must outlive this object. Each load of the form sets the path
    /// to the program's folder, not to the process's current folder: MakeDirs() may have failed and
    /// left the root of a drive as the current folder. A file search from that root would read the
    /// whole drive.
    DirListBox(Form& owner, std::string name, Directories& directories, const FileSystem& files)
        : Control(owner, std::move(name)), directories_(directories), files_(files) {}

    /// The path has no backslash at its end, except for the root of a drive.
    [[nodiscard]] const std::string& path() const { return path_; }
    /// Error: pathNotFound, which leaves the path unchanged. A drive alone ("d:") means the last
    /// path of this control on that drive, or the root of the drive if there is no such path or if
    /// the folder of that path was removed.
    Status setPath(const std::string& path);
    /// Names of the subfolders of the current folder, in no particular order. Empty for a folder
    /// that cannot be read. Does not yield.
    [[nodiscard]] std::vector<std::string> subfolders() const;

    /// The path has changed.
    Handler<> onChange;

  protected:
    void atLoad() override;

  private:
    [[nodiscard]] Result<std::string> folderFor(const std::string& path) const;
    void enterFolder(const std::string& path);

    Directories& directories_;
    const FileSystem& files_;
    std::string path_;
    std::map<char, std::string>
        lastOnDrive_; ///< the last folder on each drive, by lower-case letter
};

/// A list of drives with one chosen drive.
class DriveListBox : public Control {
  public:
    /// `directories` and `files` must outlive this object. Each load of the form chooses the
    /// drive of the program's folder.
    DriveListBox(Form& owner, std::string name, const Directories& directories,
                 const FileSystem& files)
        : Control(owner, std::move(name)), directories_(directories), files_(files) {}

    /// Letter and colon, in lower case.
    [[nodiscard]] const std::string& drive() const { return drive_; }
    /// `path` is a drive or a path on it; only the letter is used. Error: deviceUnavailable, with
    /// no change, if the drive does not exist.
    Status setDrive(const std::string& path);
    /// All drives that exist now.
    [[nodiscard]] std::vector<std::string> drives() const { return directories_.drives(); }

    /// The drive has changed.
    Handler<> onChange;

  protected:
    void atLoad() override;

  private:
    const Directories& directories_;
    const FileSystem& files_;
    std::string drive_;
};

} // namespace sonarith
