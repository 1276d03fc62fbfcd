// SPDX-License-Identifier: GPL-3.0-or-later
// Decides whether a stored choice of a drive is a device node or the path of a disc image. It opens
// neither the device nor the image.
#pragma once

#include <string>

namespace sonarith {

/// True if `chosen` names a drive, that is, a block device below /dev. A path directly
/// below /dev at which no file exists counts as a drive, too: an unplugged drive must not be taken
/// for a missing image. Ordinary files in folders of /dev ("/dev/shm/disc.cue") are not drives.
/// False for every path outside /dev; such a path is not accessed, since it may be on a server that
/// does not respond.
[[nodiscard]] bool namesADevice(const std::string& chosen);

} // namespace sonarith
