// SPDX-License-Identifier: GPL-3.0-or-later
// Splits the machine's list of drives into root paths. No drive is accessed.
#pragma once

#include <string>
#include <vector>

#include "platform/system_information.h"

namespace sonarith {

/// At most 100 roots in the machine's order, each with its backslash ("C:\").
[[nodiscard]] std::vector<std::string> driveRoots(const SystemInformation& machine);

} // namespace sonarith
