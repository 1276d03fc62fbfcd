// SPDX-License-Identifier: GPL-3.0-or-later
// Finds the files that a disc image's sheet names; sheets may come from case-insensitive systems.
// The readers of sheets check which names are valid.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace sonarith::disc {

/// The file in `folder` for `name`: the exact name first; else backslashes count as separators, and
/// each part that does not exist as written is matched case-insensitively by Unicode's rules (the
/// first match in byte order). Empty if there is none.
[[nodiscard]] std::optional<std::filesystem::path>
findImageFile(const std::filesystem::path& folder, std::string_view name);

} // namespace sonarith::disc
