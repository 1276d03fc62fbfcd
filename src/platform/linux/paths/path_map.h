// SPDX-License-Identifier: GPL-3.0-or-later
// Translates between the logic's paths ("C:\Music\track1.wav") and the machine's ("/Music/..."),
// and finds names without regard to case. It opens and changes no file.
#pragma once

#include <string>
#include <string_view>

#include "platform/linux/paths/drive_table.h"
#include "platform/linux/paths/mount_info.h"
#include "platform/result.h"

namespace sonarith {

/// Where a path of the logic leads on the machine.
struct Located {
    /// The whole machine path: as it stands on disk as far as it exists, then as it was given.
    std::string path;
    /// The folder part of `path`, and the last name in the case in which it was given. For the root
    /// of a drive the name is empty.
    std::string folder;
    std::string givenName;
    /// Something of that name exists.
    bool found = false;
};

class PathMap {
  public:
    /// Both must outlive this.
    PathMap(DriveTable& drives, MountInfo& mounts) : drives_(drives), mounts_(mounts) {}

    /// `logicPath` begins with a drive letter and a colon. Each name is taken exactly if it exists,
    /// else in whatever case it exists (of several the first in byte order). "." and ".." are
    /// worked out by text; a slash parts names as a backslash does. Errors: badFileName (no drive,
    /// a colon, star, question mark or NUL in a name), pathNotFound (a letter without a disk).
    [[nodiscard]] Result<Located> locate(std::string_view logicPath);
    /// For an absolute machine path; "." and ".." are worked out by text. The root of a drive is
    /// "D:\".
    [[nodiscard]] std::string toLogic(std::string_view machinePath);

    /// The drives as they are mounted now.
    [[nodiscard]] const DriveTable& drives();

  private:
    DriveTable& drives_;
    MountInfo& mounts_;
};

} // namespace sonarith
