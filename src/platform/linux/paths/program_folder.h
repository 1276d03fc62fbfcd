// SPDX-License-Identifier: GPL-3.0-or-later
// The folders that belong to the program and to its user, as machine paths. Not the settings'
// folder, which is the store's own business.
#pragma once

#include <string>

namespace sonarith {

/// The folder of the running executable; empty if the kernel does not tell.
[[nodiscard]] std::string executableFolder();

/// $XDG_DATA_HOME if it is an absolute path, else .local/share in the user's home.
[[nodiscard]] std::string userDataFolder();

/// "The program's folder": that of the executable if it may be written there, else (an installed
/// program) "sonarith" below `dataFolder`, which is made. If that fails, the executable's all the
/// same: it can be entered, and what is written there fails with a message of its own.
[[nodiscard]] std::string programFolder(const std::string& executableFolder,
                                        const std::string& dataFolder);

} // namespace sonarith
