// SPDX-License-Identifier: GPL-3.0-or-later
// The program's folder, as a machine path. The settings' folder is determined by the store.
#pragma once

#include <functional>
#include <string>

namespace sonarith {

/// The folder of the running executable; empty if the kernel cannot report it.
[[nodiscard]] std::string executableFolder();

/// The folder that the logic calls the program's folder. For a program that is not installed, it is
/// the executable's folder if that is writable. Otherwise, and for an installed program even if an
/// administrator runs it, it is "Sonarith" below the result of `musicFolder`, which is called only
/// in this case; that folder is created. If this fails, it is the executable's folder: the program
/// can enter it, and each write to it fails with its own error message.
[[nodiscard]] std::string programFolder(const std::string& executableFolder,
                                        const std::function<std::string()>& musicFolder);

} // namespace sonarith
