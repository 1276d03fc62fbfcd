// SPDX-License-Identifier: GPL-3.0-or-later
// Determines the kind of drive that is shown to the user for a mount, from the mount's file system
// type and device.
#pragma once

#include "platform/linux/paths/mount_info.h"
#include "platform/linux/system/block_devices.h"
#include "platform/system_information.h"

namespace sonarith::system_information {

/// Never accesses the mount itself.
[[nodiscard]] DriveKind driveKindOf(const MountPoint& mount, const BlockDevices& devices);

} // namespace sonarith::system_information
