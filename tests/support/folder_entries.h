// SPDX-License-Identifier: GPL-3.0-or-later
// Counts the entries of a folder, and checks whether its file system supports unnamed files.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace sonarith::test {

/// Number of entries whose name begins with a dot.
inline int hiddenEntriesIn(const std::filesystem::path& folder) {
    return static_cast<int>(
        std::count_if(std::filesystem::directory_iterator(folder), {}, [](const auto& entry) {
            return entry.path().filename().string().starts_with('.');
        }));
}

inline int entriesIn(const std::filesystem::path& folder) {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

inline int visibleEntriesIn(const std::filesystem::path& folder) {
    return entriesIn(folder) - hiddenEntriesIn(folder);
}

/// Whether the folder's file system supports unnamed files (O_TMPFILE). The file systems of some
/// containers do not.
inline bool hasUnnamedFiles(const std::filesystem::path& folder) {
    const int opened = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (opened >= 0) {
        ::close(opened);
    }
    return opened >= 0;
}

} // namespace sonarith::test
