// SPDX-License-Identifier: GPL-3.0-or-later
// Makes a chain of folders, level by level. Not a quiet helper: it moves the program's current
// drive and folder along, and tells the person when it fails.
#pragma once

#include <string>

#include "platform/file_system.h"
#include "platform/message_box.h"
#include "platform/mouse_pointer.h"

namespace sonarith {

/// Makes every folder of `path` (drive letter and backslashes) that does not exist. True on
/// success; the last folder is then the current one. On a failure the "SETUP" box is shown, and the
/// current folder stays where the failing step left it. The pointer is an hourglass meanwhile.
bool MakeDirs(const std::string& path, FileSystem& fileSystem, MessageBoxes& messageBoxes,
              MousePointer& mousePointer);

} // namespace sonarith
