// SPDX-License-Identifier: GPL-3.0-or-later
// Finds the files that are named in the sheet of a disc image. A name in the sheet may differ from
// the file's name in upper and lower case, because sheets may have been written on case-insensitive
// systems. The parsers of the sheets check whether a name is valid.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace sonarith::disc {

/// Finds the file `name` in `folder`. The exact name is tried first. If it does not exist,
/// backslashes count as separators too. Each part of the name that does not exist as written is
/// then matched case-insensitively by Unicode's rules (the first match in byte order). Empty if
/// there is no such file.
[[nodiscard]] std::optional<std::filesystem::path>
findImageFile(const std::filesystem::path& folder, std::string_view name);

} // namespace sonarith::disc
