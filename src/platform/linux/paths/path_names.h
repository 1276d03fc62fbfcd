// SPDX-License-Identifier: GPL-3.0-or-later
// What stands in a path, of the logic's form or of the machine's. It looks at no disk.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sonarith {

/// The names of a path, "." and ".." worked out; ".." at the root stays there.
[[nodiscard]] std::vector<std::string> namesOf(std::string_view path, std::string_view separators);

/// An absolute machine path with "." and ".." worked out by text, no doubled slash and none at its
/// end; "/" for the root and for an empty path.
[[nodiscard]] std::string plainMachinePath(std::string_view path);

/// Whether the plain machine path is `folder` or leads below it.
[[nodiscard]] bool isWithin(std::string_view path, std::string_view folder);

/// A path of the logic's form from its drive's letter on: one without a letter begins at the root
/// of `currentFolder`'s drive, or in that folder.
[[nodiscard]] std::string absolutePath(const std::string& path, const std::string& currentFolder);

} // namespace sonarith
