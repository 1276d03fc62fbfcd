// SPDX-License-Identifier: GPL-3.0-or-later
// Determines the program's folder, as a machine path. The settings store determines the folder of
// the settings.
#pragma once

#include <functional>
#include <string>

namespace sonarith {

/// The folder of the running executable; empty if the kernel cannot report it.
[[nodiscard]] std::string executableFolder();

/// Returns the folder of FileSystem::programFolder(), as a machine path:
/// - the executable's folder, if the program is not installed and may write to this folder;
/// - otherwise the folder "Sonarith" below the result of `musicFolder`, which is called only then.
///   The folder "Sonarith" is created. An installed program uses this folder even if it is run by
///   an administrator, who may write to the executable's folder.
/// If the folder "Sonarith" cannot be created, the result is the executable's folder: the program
/// can still make that folder the current folder, and each failed write produces the error message
/// of that write. If the executable's folder is unknown as well, the result is the path of the
/// missing folder "Sonarith".
[[nodiscard]] std::string programFolder(const std::string& executableFolder,
                                        const std::function<std::string()>& musicFolder);

} // namespace sonarith
