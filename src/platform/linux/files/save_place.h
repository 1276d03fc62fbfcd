// SPDX-License-Identifier: GPL-3.0-or-later
// Finds the place where a file is to be saved: opens its folder, determines its name in that
// folder, and checks whether an existing file may be replaced. Renames and replaces nothing.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include <sys/types.h>

#include "platform/linux/files/file_descriptor.h"
#include "platform/result.h"

namespace sonarith::files {

struct SavePlace {
    FileDescriptor folder;
    std::string name;
    std::optional<mode_t> mode; ///< permissions of the existing file; empty if no file exists
};

/// Returns the place that `target` names; a symbolic link to a file is followed. Fails if the
/// folder is missing, if the name is invalid, and for targets that must not be replaced: a folder,
/// any other non-regular file, and a file without write permission.
[[nodiscard]] Result<SavePlace> locate(const std::filesystem::path& target);

/// Opens a folder in which files are to be created, even if the user may not list the folder. After
/// a failure the result is invalid and errno is set.
[[nodiscard]] FileDescriptor openFolder(const std::filesystem::path& folder);

/// Flushes the folder's directory entries to the disk. Returns an errno value; 0 is success, also
/// for a folder that does not support flushing.
[[nodiscard]] int flushFolder(const FileDescriptor& folder);

} // namespace sonarith::files
