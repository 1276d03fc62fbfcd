// SPDX-License-Identifier: GPL-3.0-or-later
// Creates a chain of folders, level by level. Side effects: MakeDirs() changes the program's
// current drive and folder, and shows a message box when it fails.
#pragma once

#include <string>

#include "platform/file_system.h"
#include "platform/message_box.h"
#include "platform/mouse_pointer.h"

namespace sonarith {

/// Creates every missing folder of `path`, which has a drive letter and backslashes. Returns true
/// on success; the last folder is then the current folder. On a failure a message box with the
/// title "SETUP" is shown, and the current folder is the folder in which the failing step ran. The
/// mouse pointer is an hourglass while this function runs.
bool MakeDirs(const std::string& path, FileSystem& fileSystem, MessageBoxes& messageBoxes,
              MousePointer& mousePointer);

} // namespace sonarith
