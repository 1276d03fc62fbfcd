// SPDX-License-Identifier: GPL-3.0-or-later
// Renames a file or folder and does not replace an existing one, with one exception: see
// renameByLink(). Works on machine paths.
#pragma once

#include <string>

namespace sonarith {

/// Returns 0, or an errno value (EEXIST if `to` exists). Atomic if the kernel and the file system
/// support exclusive renames.
[[nodiscard]] int renameExclusively(const std::string& from, const std::string& to);

/// The fallback of renameExclusively() if the kernel or the file system does not support exclusive
/// renames. It creates `to` as a second hard link and removes `from`. If no link is possible (for
/// example, for a folder), it calls rename(). Only then can a file be lost: if another process
/// creates `to` between link() and rename(), rename() replaces that file.
[[nodiscard]] int renameByLink(const std::string& from, const std::string& to);

} // namespace sonarith
