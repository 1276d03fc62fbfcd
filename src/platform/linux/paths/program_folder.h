// SPDX-License-Identifier: GPL-3.0-or-later
// Determines the program's folder, as a machine path. The settings store determines the folder of
// the settings.
#pragma once

#include <functional>
#include <string>

namespace sonarith {

/// The folder of the running executable; empty if the kernel cannot report it.
[[nodiscard]] std::string executableFolder();

/// Returns the folder behind FileSystem::programFolder(), as a machine path. For a program that is
/// not installed, this is the executable's folder if that is writable. Otherwise, and for an
/// installed program even if an administrator runs it, it is the folder "Sonarith" below the result
/// of `musicFolder`, which is called only in this case. This folder is created. If it cannot be
/// created, the result is the executable's folder (if known): the program can still make it the
/// current folder, and each failed write produces the error message of that write.
[[nodiscard]] std::string programFolder(const std::string& executableFolder,
                                        const std::function<std::string()>& musicFolder);

} // namespace sonarith
