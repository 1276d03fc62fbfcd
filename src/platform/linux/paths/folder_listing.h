// SPDX-License-Identifier: GPL-3.0-or-later
// The entries of one folder of the machine, one at a time in the kernel's order. Machine paths and
// names; it uses neither drives nor other folders.
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

/// Identifies a folder, by whatever path it is reached.
struct FolderIdentity {
    dev_t device;
    ino_t inode;

    bool operator==(const FolderIdentity&) const = default;
};

struct CloseFolder {
    void operator()(DIR* opened) const { ::closedir(opened); }
};
/// A folder being listed; closed automatically.
using OpenedFolder = std::unique_ptr<DIR, CloseFolder>;

class FolderListing {
  public:
    /// Empty if the path is not a folder or cannot be read.
    [[nodiscard]] static std::optional<FolderListing> open(std::string machinePath);

    [[nodiscard]] const FolderIdentity& identity() const { return identity_; }
    /// As passed to open().
    [[nodiscard]] const std::string& path() const { return path_; }

    /// Reads the next entry, except "." and ".."; links are followed. False at the end, and once
    /// the folder has been deleted or its disk fails. Queries the kernel about an entry only if the
    /// listing does not contain its kind.
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
