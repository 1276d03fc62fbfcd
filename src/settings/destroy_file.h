// SPDX-License-Identifier: GPL-3.0-or-later
// The only function with which the program deletes a file on behalf of the user. It asks no
// question: callers do if they need one.
#pragma once

#include <string>

#include "platform/event_loop.h"
#include "platform/file_system.h"
#include "platform/result.h"

namespace sonarith {

/// Deletes the file, then yields for 0.2 seconds. A file that cannot be opened for writing (in use,
/// read-only) is not deleted. A failure of either step is returned at once, with its number and
/// text and "p_DestroyFile" as its source.
Status p_DestroyFile(const std::string& path, FileSystem& fileSystem, EventLoop& loop);

} // namespace sonarith
