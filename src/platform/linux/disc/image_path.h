// SPDX-License-Identifier: GPL-3.0-or-later
// Finds the files that a disc image's sheet names, though sheets come from systems that do not
// tell upper case from lower case. What a name may be is checked by the readers of sheets.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace sonarith::disc {

/// The file in `folder` that `name` means: that very name, else with backslashes between its parts
/// taken as slashes, and each part that is not there as it is written matched without regard to
/// case by Unicode's rules (the first match in byte order). Empty if there is none.
[[nodiscard]] std::optional<std::filesystem::path>
findImageFile(const std::filesystem::path& folder, std::string_view name);

} // namespace sonarith::disc
