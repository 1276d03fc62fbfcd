// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/folder_listing.h"

#include <string_view>
#include <utility>

#include <fcntl.h>

namespace sonarith {

std::optional<FolderListing> FolderListing::open(std::string machinePath) {
    OpenedFolder opened(::opendir(machinePath.c_str()));
    struct stat status {};
    if (!opened || ::fstat(::dirfd(opened.get()), &status) != 0) {
        return std::nullopt;
    }
    return FolderListing(std::move(opened), std::move(machinePath), {status.st_dev, status.st_ino});
}

EntryKind FolderListing::kindOf(const dirent& entry) const {
    switch (entry.d_type) {
    case DT_DIR:
        return EntryKind::folder;
    case DT_REG:
        return EntryKind::file;
    case DT_LNK:       // the kind of the link's target is returned
    case DT_UNKNOWN: { // the file system does not report kinds
        struct stat status {};
        if (::fstatat(::dirfd(opened_.get()), entry.d_name, &status, 0) != 0) {
            return EntryKind::other;
        }
        return S_ISDIR(status.st_mode)   ? EntryKind::folder
               : S_ISREG(status.st_mode) ? EntryKind::file
                                         : EntryKind::other;
    }
    default:
        return EntryKind::other;
    }
}

bool FolderListing::next(ListedEntry& entry) {
    while (const dirent* found = ::readdir(opened_.get())) {
        const std::string_view name = found->d_name;
        if (name != "." && name != "..") {
            entry.name = name;
            entry.kind = kindOf(*found);
            return true;
        }
    }
    return false;
}

} // namespace sonarith
