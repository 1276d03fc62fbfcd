// SPDX-License-Identifier: GPL-3.0-or-later
// The folders of the Linux machine under the logic's paths: walks through them, and which exist.
// It opens no files.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/directory_walk.h"
#include "platform/file_system.h"
#include "platform/linux/paths/path_map.h"

namespace sonarith {

/// Of a folder's entries those are listed that are folders or regular files, or links to such: a
/// pipe, a device or a link that leads nowhere is no file to the logic. Names that begin with a dot
/// are hidden; files have the archive bit; no entry has others.
class LinuxDirectories final : public Directories {
  public:
    /// Both must outlive this and its walks. `files` tells the current folder.
    LinuxDirectories(PathMap& paths, const FileSystem& files) : paths_(paths), files_(files) {}

    [[nodiscard]] std::unique_ptr<DirectoryWalk> startWalk() override;
    [[nodiscard]] Result<std::string> folder(const std::string& path) const override;
    [[nodiscard]] std::vector<std::string> drives() const override;

  private:
    PathMap& paths_;
    const FileSystem& files_;
};

} // namespace sonarith
