// SPDX-License-Identifier: GPL-3.0-or-later
// Determines the kind of the drive that a mount represents, from the mount's file system type,
// device and source.
#pragma once

#include "platform/linux/paths/mount_info.h"
#include "platform/linux/system/block_devices.h"
#include "platform/system_information.h"

namespace sonarith::system_information {

/// Never accesses the mount itself.
[[nodiscard]] DriveKind driveKindOf(const MountPoint& mount, const BlockDevices& devices);

} // namespace sonarith::system_information
