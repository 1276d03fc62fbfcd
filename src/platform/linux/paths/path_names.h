// SPDX-License-Identifier: GPL-3.0-or-later
// Splits and normalises machine paths and paths of the logic. Accesses no disk.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sonarith {

/// Splits `path` at each of the characters in `separators` and returns the names, with "." and ".."
/// resolved; ".." at the root is dropped.
[[nodiscard]] std::vector<std::string> namesOf(std::string_view path, std::string_view separators);

/// `path` as an absolute machine path: with "." and ".." resolved textually, without doubled and
/// trailing slashes; "/" for the root and for an empty path.
[[nodiscard]] std::string plainMachinePath(std::string_view path);

/// Whether `path`, a plain machine path, is `folder` or inside it.
[[nodiscard]] bool isWithin(std::string_view path, std::string_view folder);

/// The absolute form of a path of the logic: a path without a drive letter is relative to
/// `currentFolder`, or to the root of that folder's drive if the path begins with a separator.
[[nodiscard]] std::string absolutePath(const std::string& path, const std::string& currentFolder);

} // namespace sonarith
