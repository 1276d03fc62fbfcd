// SPDX-License-Identifier: GPL-3.0-or-later
// The folder that belongs to the program, as a machine path. Not the settings' folder, which is the
// store's own business.
#pragma once

#include <functional>
#include <string>

namespace sonarith {

/// The folder of the running executable; empty if the kernel does not tell.
[[nodiscard]] std::string executableFolder();

/// "The program's folder": that of the executable if it may be written there, else (an installed
/// program) "Sonarith" below `musicFolder`, which is asked for then, and made. If that fails, the
/// executable's all the same: it can be entered, and what is written there fails with a message of
/// its own.
[[nodiscard]] std::string programFolder(const std::string& executableFolder,
                                        const std::function<std::string()>& musicFolder);

} // namespace sonarith
