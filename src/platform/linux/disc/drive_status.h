// SPDX-License-Identifier: GPL-3.0-or-later
// Asks the kernel what a drive is doing: which drives there are, and whether a disc is in one.
// Never pulls an open tray in, and reads nothing of the disc.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/disc/disc.h"

namespace sonarith::disc {

enum class DriveState {
    loaded, ///< a disc is in
    empty,  ///< none is in; or the tray is open, which some drives cannot tell
    trayOpen,
    notReady,    ///< a disc may be spinning up
    unknown,     ///< the drive cannot tell
    unreachable, ///< no such device, not permitted, or no optical drive at all
};

struct DriveStatus {
    DriveState state = DriveState::unreachable;
    int error = 0; ///< errno of an unreachable drive
};

/// What the kernel's answer to CDROM_DRIVE_STATUS means; `error` is errno after it.
[[nodiscard]] DriveStatus statusOfAnswer(int answer, int error);

/// Cheap enough for every second. `device` is a device node.
[[nodiscard]] DriveStatus statusOf(const std::string& device);

/// Why a drive cannot be used, in words for the user. `error` as in DriveStatus.
[[nodiscard]] DriveReport problemOf(const std::string& device, int error);

/// The kernel's names ("sr0") in its list of optical drives, in the order of their numbers.
/// `information` is the text of /proc/sys/dev/cdrom/info, whose line "drive name:" lists the newest
/// drive first (kernel documentation, cdrom).
[[nodiscard]] std::vector<std::string> driveNames(std::string_view information);

/// The device nodes of the drives in that list, but for those that `isThere` denies.
[[nodiscard]] std::vector<std::string>
driveDevices(std::string_view information,
             const std::function<bool(const std::string& device)>& isThere);

/// The device nodes of the machine's optical drives; empty if it has none.
[[nodiscard]] std::vector<std::string> opticalDrives();

} // namespace sonarith::disc
