// SPDX-License-Identifier: GPL-3.0-or-later
// Finds step by step the mounts through which a path of the logic leads. A step that hangs
// identifies the mount that does not respond, and the caller can stop before a step to such a
// mount. The search starts no thread and limits no wait.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/paths/machine_files.h"

namespace sonarith {

/// How the search accesses the machine; tests replace these functions.
struct PlaceAccess {
    /// All current mount points.
    std::function<std::vector<std::string>()> mountPoints;
    /// The target of a symbolic link; empty for anything else.
    std::function<std::optional<std::string>(const std::string& path)> linkTarget;
};

/// The access to the real machine.
[[nodiscard]] PlaceAccess placesOfThisMachine();

/// Follows the path as far as it exists, with all its links, and calls `mayCall` with the mount
/// point before each step that accesses a mount. Stops and returns false as soon as `mayCall`
/// returns false. Each step may block.
[[nodiscard]] bool walkToPlace(MachineFiles& machine, const PlaceAccess& access,
                               const std::string& path,
                               const std::function<bool(const std::string& mount)>& mayCall);

} // namespace sonarith
