// SPDX-License-Identifier: GPL-3.0-or-later
// Determines the kind of drive that the user sees for a mount, from its file system's type and its
// device.
#pragma once

#include "platform/linux/paths/mount_info.h"
#include "platform/linux/system/block_devices.h"
#include "platform/system_information.h"

namespace sonarith::system_information {

/// Never accesses the mount itself.
[[nodiscard]] DriveKind driveKindOf(const MountPoint& mount, const BlockDevices& devices);

} // namespace sonarith::system_information
