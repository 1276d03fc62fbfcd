// SPDX-License-Identifier: GPL-3.0-or-later
// Finds out step by step on which mounts a path of the logic lies, so that the mount that does not
// answer is known by the step that hangs, and is not asked a second time. It waits for nothing.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/paths/machine_files.h"

namespace sonarith {

/// What the search asks of the machine; tests put others here.
struct PlaceAccess {
    /// All mount points there are now.
    std::function<std::vector<std::string>()> mountPoints;
    /// What a symbolic link says; nothing for anything else.
    std::function<std::optional<std::string>(const std::string& path)> linkTarget;
};

/// Of this machine.
[[nodiscard]] PlaceAccess placesOfThisMachine();

/// Calls `mayAsk` with its mount point ahead of each step that asks a mount about the path, as far
/// as the path exists, and goes through all links on the way. False once `mayAsk` returns false.
/// Each step may block.
[[nodiscard]] bool walkToPlace(MachineFiles& machine, const PlaceAccess& access,
                               const std::string& path,
                               const std::function<bool(const std::string& mount)>& mayAsk);

} // namespace sonarith
