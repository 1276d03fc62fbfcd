// SPDX-License-Identifier: GPL-3.0-or-later
// The entries of one folder of the machine, one at a time as the kernel gives them. Machine paths
// and names; it knows nothing of drives, nor of other folders.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <dirent.h>
#include <sys/stat.h>

namespace sonarith {

enum class EntryKind { file, folder, other };

struct ListedEntry {
    std::string name;
    EntryKind kind;
};

/// Which folder it is, whatever paths lead to it.
struct FolderIdentity {
    dev_t device;
    ino_t inode;

    bool operator==(const FolderIdentity&) const = default;
};

struct CloseFolder {
    void operator()(DIR* opened) const { ::closedir(opened); }
};
/// A folder that is being listed; closed by itself.
using OpenedFolder = std::unique_ptr<DIR, CloseFolder>;

class FolderListing {
  public:
    /// Nothing for what is no folder or cannot be read.
    [[nodiscard]] static std::optional<FolderListing> open(std::string machinePath);

    [[nodiscard]] const FolderIdentity& identity() const { return identity_; }
    /// The path given.
    [[nodiscard]] const std::string& path() const { return path_; }

    /// Without "." and "..", links followed. False at the end and once the folder has vanished or
    /// its disk fails. Asks the kernel about an entry only where the listing does not tell its
    /// kind.
    bool next(ListedEntry& entry);

  private:
    FolderListing(OpenedFolder opened, std::string path, const FolderIdentity& identity)
        : opened_(std::move(opened)), path_(std::move(path)), identity_(identity) {}
    [[nodiscard]] EntryKind kindOf(const dirent& entry) const;

    OpenedFolder opened_;
    std::string path_;
    FolderIdentity identity_;
};

} // namespace sonarith
