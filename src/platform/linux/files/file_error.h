// SPDX-License-Identifier: GPL-3.0-or-later
// Maps the errno value of a failed system call on a file or folder to one of the logic's error
// numbers and to an error message for the user. It makes no system call. It is not for failures of
// drives and sound cards.
#pragma once

#include <filesystem>
#include <string>

#include "platform/result.h"

namespace sonarith {

/// An error with `number` and its standard message.
[[nodiscard]] Error fileError(ErrorNumber number);

/// The error for `systemErrorNumber` (a value of errno), with its standard message. ENOENT gives
/// fileNotFound; a caller that knows that the folder is missing uses pathNotFound instead. Every
/// errno value without a special meaning for the logic gives pathFileAccess.
[[nodiscard]] Error fileErrorOfSystem(int systemErrorNumber);

} // namespace sonarith

namespace sonarith::files {

/// Like fileErrorOfSystem(), but the message names `path`, and ENOENT gives pathNotFound, whichever
/// part of the path is missing. For callers that need not distinguish a missing file from a missing
/// folder, such as callers that create a file.
[[nodiscard]] Error systemError(int error, const std::filesystem::path& path);
/// Describes `error` (a value of errno) in words that fit into a sentence that already names the
/// file: "no space is left".
[[nodiscard]] std::string reasonOf(int error);

} // namespace sonarith::files
