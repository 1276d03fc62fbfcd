// SPDX-License-Identifier: GPL-3.0-or-later
// The folders of the Linux machine under the logic's paths: walks through them, and which exist.
// It opens no files.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_set>
#include <vector>

#include "platform/directory_walk.h"
#include "platform/file_system.h"
#include "platform/linux/paths/folder_listing.h"
#include "platform/linux/paths/path_map.h"

namespace sonarith {

/// The folders that one walk has listed, whatever objects carry it on. Any thread may call add().
class WalkedFolders {
  public:
    /// False if it was there before.
    [[nodiscard]] bool add(const FolderIdentity& folder);

  private:
    struct Hash {
        std::size_t operator()(const FolderIdentity& identity) const {
            // Inodes of one disk differ; folders of two disks that collide cost a comparison.
            return std::hash<ino_t>()(identity.inode) ^ (std::hash<dev_t>()(identity.device) << 1);
        }
    };

    std::mutex mutex_;
    std::unordered_set<FolderIdentity, Hash> folders_;
};

/// Of a folder's entries those are listed that are folders or regular files, or links to such: a
/// pipe, a device or a link that leads nowhere is no file to the logic. Names that begin with a dot
/// are hidden; files have the archive bit; no entry has others.
class LinuxDirectories final : public Directories {
  public:
    /// Both must outlive this and its walks. `files` tells the current folder.
    LinuxDirectories(PathMap& paths, const FileSystem& files) : paths_(paths), files_(files) {}

    [[nodiscard]] std::unique_ptr<DirectoryWalk> startWalk() override;
    /// Carries a walk on that has listed `walked` already, and adds to that what it lists.
    [[nodiscard]] std::unique_ptr<DirectoryWalk>
    continueWalk(std::shared_ptr<WalkedFolders> walked);
    [[nodiscard]] Result<std::string> folder(const std::string& path) const override;
    [[nodiscard]] std::vector<std::string> drives() const override;

  private:
    PathMap& paths_;
    const FileSystem& files_;
};

} // namespace sonarith
