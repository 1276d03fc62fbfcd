// SPDX-License-Identifier: GPL-3.0-or-later
// Tells a drive's device node from the path of a disc image, of which a choice may hold either. It
// opens neither.
#pragma once

#include <string>

namespace sonarith {

/// Whether `chosen` means a drive: a block device below /dev, or a name directly below /dev that is
/// not there, since a drive that was unplugged must not turn into a missing image. Below /dev there
/// are folders for ordinary files, too ("/dev/shm"). Paths elsewhere are not looked at, as they may
/// lie on a server that does not answer.
[[nodiscard]] bool namesADevice(const std::string& chosen);

} // namespace sonarith
