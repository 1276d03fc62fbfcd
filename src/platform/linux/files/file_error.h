// SPDX-License-Identifier: GPL-3.0-or-later
// Maps a failed system call on a file or folder to the error number that the logic distinguishes
// and the error message for the user. It makes no system call. Devices have their own messages.
#pragma once

#include <filesystem>
#include <string>

#include "platform/result.h"

namespace sonarith {

/// An error with `number` and its standard message.
[[nodiscard]] Error fileError(ErrorNumber number);

/// The number for `systemErrorNumber` (a value of errno), with its standard message. ENOENT is
/// fileNotFound; a caller that has found the folder missing uses pathNotFound itself. Every errno
/// without a special meaning for the logic is pathFileAccess.
[[nodiscard]] Error fileErrorOfSystem(int systemErrorNumber);

} // namespace sonarith

namespace sonarith::files {

/// As fileErrorOfSystem(), with a message that names `path`. For files that are about to be
/// written, or that are read by their whole path; so ENOENT is pathNotFound here, whichever part of
/// the path is missing.
[[nodiscard]] Error systemError(int error, const std::filesystem::path& path);
/// The cause alone, for a sentence that names the file elsewhere: "no space is left".
[[nodiscard]] std::string reasonOf(int error);

} // namespace sonarith::files
