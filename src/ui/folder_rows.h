// SPDX-License-Identifier: GPL-3.0-or-later
// The rows of a list of folders: from the drive down to the folder in which the list stands, and
// the folders in that one. Pure logic; folder_list_view.h shows it.
#pragma once

#include <string>
#include <vector>

namespace sonarith {

struct FolderRow {
    std::string name;
    std::string path; ///< without a backslash at its end but for the root of a drive
    int depth = 0;    ///< 0 for the drive
    bool operator==(const FolderRow&) const = default;
};

struct FolderRows {
    std::vector<FolderRow> rows;
    int current = -1; ///< the row of the folder in which the list stands; -1 without a path
};

/// `path` as DirListBox::path(); `subfolders` are the names of the folders in it, in any order.
/// They become ordered by name, capitals or not.
[[nodiscard]] FolderRows folderRows(const std::string& path,
                                    const std::vector<std::string>& subfolders);

} // namespace sonarith
