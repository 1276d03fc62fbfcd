// SPDX-License-Identifier: GPL-3.0-or-later
// A rename that never replaces what already has the new name. Works on machine paths.
#pragma once

#include <string>

namespace sonarith {

/// 0, or the value of errno (EEXIST if `to` exists). Atomic wherever the file system can do it.
[[nodiscard]] int renameExclusively(const std::string& from, const std::string& to);

/// What renameExclusively() falls back to where the kernel or the file system knows no exclusive
/// rename: a second link and the removal of the first; where there are no links, a plain rename
/// after the attempt showed that the name is free, the one case in which somebody could come
/// between.
[[nodiscard]] int renameByLink(const std::string& from, const std::string& to);

} // namespace sonarith
