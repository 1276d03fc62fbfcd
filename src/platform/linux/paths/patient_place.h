// SPDX-License-Identifier: GPL-3.0-or-later
// Finds step by step on which mounts a path of the logic is, so that the hanging step identifies
// the mount that does not respond, and that mount is not called a second time. It waits for
// nothing.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/paths/machine_files.h"

namespace sonarith {

/// What the search calls on the machine; tests replace it.
struct PlaceAccess {
    /// All current mount points.
    std::function<std::vector<std::string>()> mountPoints;
    /// The target of a symbolic link; empty for anything else.
    std::function<std::optional<std::string>(const std::string& path)> linkTarget;
};

/// The real machine's.
[[nodiscard]] PlaceAccess placesOfThisMachine();

/// Follows the path as far as it exists, with all its links, and calls `mayCall` with the mount
/// point before each step that accesses a mount. False once `mayCall` returns false. Each step may
/// block.
[[nodiscard]] bool walkToPlace(MachineFiles& machine, const PlaceAccess& access,
                               const std::string& path,
                               const std::function<bool(const std::string& mount)>& mayCall);

} // namespace sonarith
