// SPDX-License-Identifier: GPL-3.0-or-later
// What a failed system call on a file or folder means: the number that the logic tells apart, and
// the words that the user reads. It calls nothing itself; devices have texts of their own.
#pragma once

#include <filesystem>
#include <string>

#include "platform/result.h"

namespace sonarith {

/// The number with its classic text.
[[nodiscard]] Error fileError(ErrorNumber number);

/// The number that `systemErrorNumber` (a value of errno) stands for, with its classic text.
/// ENOENT is fileNotFound: a caller that knows the folder to be missing says pathNotFound itself.
/// An errno that means nothing special to the logic is pathFileAccess.
[[nodiscard]] Error fileErrorOfSystem(int systemErrorNumber);

} // namespace sonarith

namespace sonarith::files {

/// The same number with words that name `path`. For files that are about to be written or are read
/// by their whole path; so ENOENT is pathNotFound here, whichever part of the path is missing.
[[nodiscard]] Error systemError(int error, const std::filesystem::path& path);
/// What it means by itself, for a sentence that names the file elsewhere: "no space is left".
[[nodiscard]] std::string reasonOf(int error);

} // namespace sonarith::files
