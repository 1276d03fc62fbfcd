// SPDX-License-Identifier: GPL-3.0-or-later
// The root paths of all drives, out of the machine's one text of them. It asks no drive.
#pragma once

#include <string>
#include <vector>

#include "platform/system_information.h"

namespace sonarith {

/// In the machine's order, each with its backslash ("C:\"); at most 100.
[[nodiscard]] std::vector<std::string> driveRoots(const SystemInformation& machine);

} // namespace sonarith
