// SPDX-License-Identifier: GPL-3.0-or-later
// Files that have no name until they are whole: made in a folder, written, and put under their name
// in one step, so that whatever happens the name holds the old file or the new one. Nothing is
// known here of what the files hold.
#pragma once

#include <filesystem>

#include "platform/linux/sound/file_descriptor.h"
#include "platform/result.h"

namespace sonarith::sound {

/// An empty file without a name in `folder`, open for reading and writing. It is gone when it is
/// closed, or when the process ends, unless it was published.
[[nodiscard]] Result<FileDescriptor> createUnnamedFile(const std::filesystem::path& folder);

/// Puts what `file` holds under the name `target`, and on the disk, before it returns. A file of
/// that name is replaced in one step and passes on its mode; a symbolic link is followed. What has
/// got a name already, or lies in another file system, is copied first. After a failure `target` is
/// what it was, and nothing half-written is left. Fails for folders and for anything else that is
/// no plain file, and for files that may not be written to.
[[nodiscard]] Status publish(const FileDescriptor& file, const std::filesystem::path& target);

} // namespace sonarith::sound
