// SPDX-License-Identifier: GPL-3.0-or-later
// Distinguishes the device node of a drive from the path of a disc image; a stored choice may be
// either. It opens neither.
#pragma once

#include <string>

namespace sonarith {

/// True if `chosen` names a drive: a block device below /dev, or a missing name directly below
/// /dev, because an unplugged drive must not be taken for a missing image. Ordinary files in
/// folders of /dev ("/dev/shm/disc.cue") are not drives. Paths outside /dev are not checked, since
/// they may be on a server that does not respond.
[[nodiscard]] bool namesADevice(const std::string& chosen);

} // namespace sonarith
