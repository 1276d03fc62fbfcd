// SPDX-License-Identifier: GPL-3.0-or-later
// Computes the rows of a list of folders: the folders from the drive to the current folder, and the
// subfolders of the current folder. folder_list_view.h shows the rows.
#pragma once

#include <string>
#include <vector>

namespace sonarith {

struct FolderRow {
    std::string name;
    std::string path; ///< without a backslash at its end, except for the root of a drive
    int depth = 0;    ///< 0 for the drive
    bool operator==(const FolderRow&) const = default;
};

struct FolderRows {
    std::vector<FolderRow> rows;
    int current = -1; ///< index in `rows` of the current folder; -1 if the path is empty
};

/// `path` is the path of the current folder, as DirListBox::path() returns it. `subfolders` are the
/// names of the subfolders of `path` in any order; their rows are sorted by name, ignoring case.
[[nodiscard]] FolderRows folderRows(const std::string& path,
                                    const std::vector<std::string>& subfolders);

} // namespace sonarith
