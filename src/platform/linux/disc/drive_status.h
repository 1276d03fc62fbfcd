// SPDX-License-Identifier: GPL-3.0-or-later
// Queries the kernel for the state of drives: which drives exist, and whether a drive contains a
// disc. The queries never close an open tray and read nothing from the disc.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/disc/disc.h"

namespace sonarith::disc {

enum class DriveState {
    loaded, ///< a disc is in the drive
    empty,  ///< no disc; also for an open tray if the drive cannot report open trays
    trayOpen,
    notReady,    ///< a disc may be spinning up
    unknown,     ///< the drive cannot report its state
    unreachable, ///< any other failure: no such device, no permission, not an optical drive...
};

struct DriveStatus {
    DriveState state = DriveState::unreachable;
    int error = 0; ///< errno of an unreachable drive
};

/// The meaning of `reply`, the result of the ioctl CDROM_DRIVE_STATUS. `error` is errno after that
/// ioctl.
[[nodiscard]] DriveStatus statusOfReply(int reply, int error);

/// Queries the drive `device`, a device node. Cheap enough to be called each second.
[[nodiscard]] DriveStatus statusOf(const std::string& device);

/// Why a drive cannot be used, with a message for the user. `error` is an errno value, for example
/// DriveStatus::error.
[[nodiscard]] DriveReport problemOf(const std::string& device, int error);

/// The names ("sr0") of the optical drives in the kernel's list, in the order of their numbers.
/// `information` is the text of /proc/sys/dev/cdrom/info, whose line "drive name:" lists the newest
/// drive first (kernel documentation, cdrom).
[[nodiscard]] std::vector<std::string> driveNames(std::string_view information);

/// The device nodes of the drives that driveNames() returns for `information` and for which
/// `exists` returns true.
[[nodiscard]] std::vector<std::string>
driveDevices(std::string_view information,
             const std::function<bool(const std::string& device)>& exists);

/// The device nodes of the machine's optical drives; empty if it has none.
[[nodiscard]] std::vector<std::string> opticalDrives();

} // namespace sonarith::disc
