// SPDX-License-Identifier: GPL-3.0-or-later
// Takes paths of the logic's form (drive letter, backslashes) apart, as texts alone: nothing here
// looks at a disk.
#pragma once

#include <string>

#include "platform/result.h"
#include "settings/process_state.h"

namespace sonarith {

/// The file name without its folder and without its last four characters, taken for the extension.
/// Error: invalidProcedureCall if there are fewer than four to cut.
[[nodiscard]] Result<std::string> FileBaseName(const std::string& path);

/// The file name: what stands behind the last backslash, or the whole path if nothing does. Also
/// sets `process.SplitDir` to what stands before the name, with its trailing backslash, so that
/// SplitDir and a new name make a full path.
std::string SplitPath(const std::string& path, ProcessState& process);

} // namespace sonarith
