// SPDX-License-Identifier: GPL-3.0-or-later
// Finds the files that a disc image's sheet names; sheets may come from case-insensitive systems.
// The readers of sheets check which names are valid.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace sonarith::disc {

/// Finds the file in `folder` for `name`. The exact name is tried first. Then backslashes are
/// separators too, and each part that does not exist as written is matched case-insensitively by
/// Unicode's rules (the first match in byte order). Empty if there is no such file.
[[nodiscard]] std::optional<std::filesystem::path>
findImageFile(const std::filesystem::path& folder, std::string_view name);

} // namespace sonarith::disc
