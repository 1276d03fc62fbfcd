// SPDX-License-Identifier: GPL-3.0-or-later
// Where a file is to stand: its folder, held open, and its name there, with what must hold before
// something may be replaced. It names and replaces nothing itself.
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
    std::optional<mode_t> mode; ///< of the file that stands there now, if there is one
};

/// The place that `target` means; a symbolic link to a file is followed. Fails where the folder is
/// missing, and for what may not be replaced: a folder, anything else that is no plain file, and a
/// file that may not be written to.
[[nodiscard]] Result<SavePlace> locate(const std::filesystem::path& target);

/// Open for making files in it, also where it may not be listed. Invalid, with errno, after a
/// failure.
[[nodiscard]] FileDescriptor openFolder(const std::filesystem::path& folder);

/// Brings the folder's names to the disk. Answers an errno value; 0 is success, and so is a folder
/// that cannot be flushed.
[[nodiscard]] int flushFolder(const FileDescriptor& folder);

} // namespace sonarith::files
