// SPDX-License-Identifier: GPL-3.0-or-later
// The machine's error numbers (errno) as the failures that the logic knows. For files and folders
// only; devices have texts of their own.
#pragma once

#include "platform/result.h"

namespace sonarith {

/// The number with its classic text.
[[nodiscard]] Error fileError(ErrorNumber number);

/// For a value of errno. One that means nothing special to the logic becomes pathFileAccess.
[[nodiscard]] Error fileErrorOfSystem(int systemErrorNumber);

} // namespace sonarith
