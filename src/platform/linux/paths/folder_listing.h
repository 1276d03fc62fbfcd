// SPDX-License-Identifier: GPL-3.0-or-later
// Lists the entries of one folder of the machine, one at a time in the kernel's order. It uses
// machine paths and names; it neither translates drive letters nor enters subfolders.
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

/// Identifies a folder independently of its path: every path to it yields the same identity.
struct FolderIdentity {
    dev_t device;
    ino_t inode;

    bool operator==(const FolderIdentity&) const = default;
};

struct CloseFolder {
    void operator()(DIR* opened) const { ::closedir(opened); }
};
/// A folder that is being listed; its destructor closes it.
using OpenedFolder = std::unique_ptr<DIR, CloseFolder>;

class FolderListing {
  public:
    /// Empty if the path is not a folder or cannot be read.
    [[nodiscard]] static std::optional<FolderListing> open(std::string machinePath);

    [[nodiscard]] const FolderIdentity& identity() const { return identity_; }
    /// The path that was passed to open().
    [[nodiscard]] const std::string& path() const { return path_; }

    /// Reads the next entry, but skips "." and "..". The kind of a link is that of its target.
    /// False at the end, which may come early if the folder has been deleted or its disk fails.
    /// Calls stat only for links and for entries whose kind readdir() does not report (DT_UNKNOWN).
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
