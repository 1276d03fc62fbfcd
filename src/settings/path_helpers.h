// SPDX-License-Identifier: GPL-3.0-or-later
// Splits paths of the logic (with drive letter and backslashes) as texts; nothing here accesses a
// disk.
#pragma once

#include <string>

#include "platform/result.h"
#include "settings/process_state.h"

namespace sonarith {

/// The file name without its folder and without its last four characters, which count as the
/// extension. Error: invalidProcedureCall if the file name has fewer than four characters.
[[nodiscard]] Result<std::string> FileBaseName(const std::string& path);

/// Returns the file name: the text after the last backslash, or the whole path if that text is
/// empty. Also sets `process.SplitDir` to the text before the name, with its trailing backslash, so
/// that SplitDir and a new name make a full path.
std::string SplitPath(const std::string& path, ProcessState& process);

} // namespace sonarith
