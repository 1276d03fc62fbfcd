// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/system/mount_table.h"

#include <utility>

#include "platform/linux/paths/path_names.h"

namespace sonarith::system_information {

std::optional<MountPoint> MountTable::holding(std::string_view path) {
    if (auto changed = kernel_.allChanged()) {
        mounts_ = std::move(*changed);
    }
    const MountPoint* deepest = nullptr;
    for (const MountPoint& mount : mounts_) {
        const bool holds = mount.path == "/" || isWithin(path, mount.path);
        if (holds && (deepest == nullptr || mount.path.size() > deepest->path.size())) {
            deepest = &mount;
        }
    }
    return deepest == nullptr ? std::nullopt : std::optional(*deepest);
}

} // namespace sonarith::system_information
