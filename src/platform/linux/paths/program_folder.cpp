// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/program_folder.h"

#include <filesystem>
#include <system_error>

#include <unistd.h>

namespace sonarith {
namespace {

/// Whether the program was installed by its package, which puts the help pages below
/// share/sonarith.
bool isInstalled(const std::string& executableFolder) {
    std::error_code ignored;
    return std::filesystem::is_directory(executableFolder + "/../share/sonarith", ignored);
}

} // namespace

std::string executableFolder() {
    std::error_code unknown;
    return std::filesystem::read_symlink("/proc/self/exe", unknown).parent_path().string();
}

std::string programFolder(const std::string& executableFolder,
                          const std::function<std::string()>& musicFolder) {
    if (!executableFolder.empty() && !isInstalled(executableFolder) &&
        ::access(executableFolder.c_str(), W_OK | X_OK) == 0) {
        return executableFolder;
    }
    const std::string folder = musicFolder() + "/Sonarith";
    std::error_code failed;
    std::filesystem::create_directories(folder, failed);
    // If the folder "Sonarith" could not be created, the executable's folder is returned even if it
    // is not writable: the program can still make it the current folder.
    const bool usable = std::filesystem::is_directory(folder, failed);
    return usable || executableFolder.empty() ? folder : executableFolder;
}

} // namespace sonarith
