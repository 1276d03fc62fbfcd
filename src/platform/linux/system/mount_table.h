// SPDX-License-Identifier: GPL-3.0-or-later
// Finds, in the kernel's current list of mounts, the mount that contains a path. It accesses no
// mount, so a hanging mount blocks no caller.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/paths/mount_info.h"

namespace sonarith::system_information {

class MountTable {
  public:
    /// `list` is the path of a file in the format of /proc/self/mountinfo.
    explicit MountTable(const std::string& list) : kernel_(list) {}

    /// Updates the table. Returns whether the kernel's list has changed; true at the first call.
    [[nodiscard]] bool update();
    /// The deepest mount that contains `path`, a plain machine path (path_names.h); empty if no
    /// mount of the table contains `path`.
    [[nodiscard]] std::optional<MountPoint> holding(std::string_view path) const;

  private:
    MountInfo kernel_;
    std::vector<MountPoint> mounts_;
};

} // namespace sonarith::system_information
