// SPDX-License-Identifier: GPL-3.0-or-later
// What a failure of the system means for a file that is written or read, as the number and the
// words that people get to see. It tries nothing itself.
#pragma once

#include <filesystem>

#include "platform/result.h"

namespace sonarith::files {

/// The failure that the system's `error` (an errno value) means for `path`, in words.
[[nodiscard]] Error systemError(int error, const std::filesystem::path& path);

} // namespace sonarith::files
