// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/program_folder.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <pwd.h>
#include <unistd.h>

namespace sonarith {

std::string executableFolder() {
    std::error_code unknown;
    return std::filesystem::read_symlink("/proc/self/exe", unknown).parent_path().string();
}

std::string userDataFolder() {
    const char* dataHome = std::getenv("XDG_DATA_HOME");
    if (dataHome != nullptr && dataHome[0] == '/') {
        return dataHome;
    }
    const char* home = std::getenv("HOME");
    if (home == nullptr || home[0] != '/') {
        const passwd* user = ::getpwuid(::getuid());
        home = user != nullptr ? user->pw_dir : "/";
    }
    return std::string(home) + "/.local/share";
}

std::string programFolder(const std::string& executableFolder, const std::string& dataFolder) {
    if (!executableFolder.empty() && ::access(executableFolder.c_str(), W_OK | X_OK) == 0) {
        return executableFolder;
    }
    const std::string folder = dataFolder + "/sonarith";
    std::error_code failed;
    std::filesystem::create_directories(folder, failed);
    // A program that cannot enter its folder never shows a window.
    const bool usable = std::filesystem::is_directory(folder, failed);
    return usable || executableFolder.empty() ? folder : executableFolder;
}

} // namespace sonarith
