// SPDX-License-Identifier: GPL-3.0-or-later
// The two controls with which a person chooses a folder: the list of folders and the list of
// drives. Each stands on something that exists; what exists they ask of directory_walk.h.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/controls/control.h"
#include "platform/directory_walk.h"
#include "platform/result.h"

namespace sonarith {

/// A list of folders that stands in one of them.
class DirListBox : public Control {
  public:
    /// `directories` must outlive this. It stands nowhere until reset().
    DirListBox(std::string name, const Directories& directories)
        : Control(std::move(name)), directories_(directories) {}

    /// Without a backslash at its end but for the root of a drive.
    [[nodiscard]] const std::string& path() const { return path_; }
    /// Errors: pathNotFound, which leaves it where it stands. A drive alone ("d:") means the folder
    /// of that drive in which it stood last, or else the drive's root.
    Status setPath(const std::string& path);
    /// Stands in a folder, unasked, as when it is made, and forgets where else it stood.
    void reset(const std::string& path);

    /// The path has become another one.
    Handler<> onChange;

  private:
    [[nodiscard]] Result<std::string> folderFor(const std::string& path) const;
    void standIn(const std::string& path);

    const Directories& directories_;
    std::string path_;
    std::map<char, std::string> lastOnDrive_; ///< by lower-case letter
};

/// A list of drives, one of them chosen.
class DriveListBox : public Control {
  public:
    /// `directories` must outlive this.
    DriveListBox(std::string name, const Directories& directories)
        : Control(std::move(name)), directories_(directories) {}

    /// Letter and colon, lower case.
    [[nodiscard]] const std::string& drive() const { return drive_; }
    /// A drive or a path on it: the letter counts. Errors: deviceUnavailable, and no change, if
    /// there is no such drive.
    Status setDrive(const std::string& path);
    /// Stands on the drive of a path, unasked, as when it is made.
    void reset(const std::string& path);
    /// All drives that there are now.
    [[nodiscard]] std::vector<std::string> drives() const { return directories_.drives(); }

    /// The drive has become another one.
    Handler<> onChange;

  private:
    const Directories& directories_;
    std::string drive_;
};

} // namespace sonarith
