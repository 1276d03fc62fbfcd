// SPDX-License-Identifier: GPL-3.0-or-later
// Deletes a file on behalf of the user. The program uses this function for every such deletion. The
// function asks no question: callers ask first if they need to.
#pragma once

#include <string>

#include "platform/event_loop.h"
#include "platform/file_system.h"
#include "platform/result.h"

namespace sonarith {

/// Deletes the file, then yields for 0.2 seconds. A file that cannot be opened for writing (in use,
/// read-only) is not deleted. A failure to open or to delete the file is returned at once: with the
/// number and text of that failure, and with "p_DestroyFile" as Error::source.
Status p_DestroyFile(const std::string& path, FileSystem& fileSystem, EventLoop& loop);

} // namespace sonarith
