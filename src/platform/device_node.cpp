// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/device_node.h"

#include <filesystem>
#include <system_error>

namespace sonarith {

bool namesADevice(const std::string& chosen) {
    if (!chosen.starts_with("/dev/")) {
        return false;
    }
    const std::filesystem::path path(chosen);
    std::error_code ignored;
    if (std::filesystem::is_block_file(path, ignored)) {
        return true;
    }
    return path.parent_path() == "/dev" && !std::filesystem::exists(path, ignored);
}

} // namespace sonarith
