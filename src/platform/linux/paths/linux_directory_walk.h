// SPDX-License-Identifier: GPL-3.0-or-later
// Accesses the folders of the Linux machine by the logic's paths: walks through them and checks
// whether they exist. It opens no files.
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

/// The folders that one walk has listed. If a new DirectoryWalk object continues the walk (see
/// continueWalk()), the old and the new object use the same set. add() is thread-safe.
class WalkedFolders {
  public:
    /// Returns false if the folder was already in the set.
    [[nodiscard]] bool add(const FolderIdentity& folder);

  private:
    struct Hash {
        std::size_t operator()(const FolderIdentity& identity) const {
            // Inodes of one disk are unique; a collision between folders of two disks costs a
            // comparison.
            return std::hash<ino_t>()(identity.inode) ^ (std::hash<dev_t>()(identity.device) << 1);
        }
    };

    std::mutex mutex_;
    std::unordered_set<FolderIdentity, Hash> folders_;
};

/// Lists folders, regular files and links to them. Pipes, sockets, devices and dangling links are
/// omitted. Folders have the attribute "directory", files the attribute "archive". Entries whose
/// names begin with a dot, except "." and "..", also have the attribute "hidden".
class LinuxDirectories final : public Directories {
  public:
    /// Both arguments must outlive this object and its walks. `files` provides the current folder.
    LinuxDirectories(PathMap& paths, const FileSystem& files) : paths_(paths), files_(files) {}

    [[nodiscard]] std::unique_ptr<DirectoryWalk> startWalk() override;
    /// Returns an object that continues a walk. `walked` contains the folders that the walk has
    /// already listed; the object adds the folders that it lists.
    [[nodiscard]] std::unique_ptr<DirectoryWalk>
    continueWalk(std::shared_ptr<WalkedFolders> walked);
    [[nodiscard]] Result<std::string> folder(const std::string& path) const override;
    [[nodiscard]] std::vector<std::string> drives() const override;

  private:
    PathMap& paths_;
    const FileSystem& files_;
};

} // namespace sonarith
