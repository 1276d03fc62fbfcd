// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/system/mount_table.h"

#include <utility>

#include "platform/linux/paths/path_names.h"

namespace sonarith::system_information {

bool MountTable::update() {
    auto changed = kernel_.allChanged();
    if (changed) {
        mounts_ = std::move(*changed);
    }
    return changed.has_value();
}

std::optional<MountPoint> MountTable::holding(std::string_view path) const {
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
