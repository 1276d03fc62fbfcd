// SPDX-License-Identifier: GPL-3.0-or-later
// Which kind of drive a mount is to a user, by its file system's type and its device.
#pragma once

#include "platform/linux/paths/mount_info.h"
#include "platform/linux/system/block_devices.h"
#include "platform/system_information.h"

namespace sonarith::system_information {

/// Never asks the mount itself.
[[nodiscard]] DriveKind driveKindOf(const MountPoint& mount, const BlockDevices& devices);

} // namespace sonarith::system_information
