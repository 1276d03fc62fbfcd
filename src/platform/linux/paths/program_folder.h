// SPDX-License-Identifier: GPL-3.0-or-later
// The program's folder, as a machine path. The settings' folder is determined by the store.
#pragma once

#include <functional>
#include <string>

namespace sonarith {

/// The folder of the running executable; empty if the kernel cannot report it.
[[nodiscard]] std::string executableFolder();

/// "The program's folder": that of the executable if it is writable. For an installed program, even
/// if an administrator runs it, and for any other, "Sonarith" below `musicFolder`, which is only
/// then called; that folder is created. If this fails, the executable's folder: it can be entered,
/// and writing to it fails with its own error message.
[[nodiscard]] std::string programFolder(const std::string& executableFolder,
                                        const std::function<std::string()>& musicFolder);

} // namespace sonarith
