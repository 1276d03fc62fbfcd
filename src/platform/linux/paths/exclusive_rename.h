// SPDX-License-Identifier: GPL-3.0-or-later
// A rename that never replaces an existing file. Works on machine paths.
#pragma once

#include <string>

namespace sonarith {

/// 0, or the value of errno (EEXIST if `to` exists). Atomic if the file system supports it.
[[nodiscard]] int renameExclusively(const std::string& from, const std::string& to);

/// The fallback of renameExclusively() if the kernel or the file system does not support exclusive
/// renames: a second link and the removal of the first; without links, a plain rename after the
/// attempt showed that the name is free. Only this last case is not safe against another process
/// that takes the name meanwhile.
[[nodiscard]] int renameByLink(const std::string& from, const std::string& to);

} // namespace sonarith
