// SPDX-License-Identifier: GPL-3.0-or-later
// A rename that never replaces an existing file. Works on machine paths.
#pragma once

#include <string>

namespace sonarith {

/// 0, or the value of errno (EEXIST if `to` exists). Atomic if the file system supports it.
[[nodiscard]] int renameExclusively(const std::string& from, const std::string& to);

/// The fallback of renameExclusively() if the kernel or the file system does not support exclusive
/// renames. It creates a second hard link and removes the first. If links are not supported, it
/// uses a plain rename after the failed link() has shown that the name is free; only in this case
/// another process that creates a file of this name meanwhile loses that file.
[[nodiscard]] int renameByLink(const std::string& from, const std::string& to);

} // namespace sonarith
