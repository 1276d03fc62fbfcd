// SPDX-License-Identifier: GPL-3.0-or-later
// The one way in which the program removes a file from disk. It asks nobody; callers have.
#pragma once

#include <string>

#include "platform/event_loop.h"
#include "platform/file_system.h"
#include "platform/result.h"

namespace sonarith {

/// Deletes the file, then yields for 0.2 seconds. A file that cannot be opened for writing (in use,
/// read-only) stays. A failure of either step is passed on at once, with its number and text and
/// "p_DestroyFile" as its source.
Status p_DestroyFile(const std::string& path, FileSystem& fileSystem, EventLoop& loop);

} // namespace sonarith
