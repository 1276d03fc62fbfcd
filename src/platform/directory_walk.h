// SPDX-License-Identifier: GPL-3.0-or-later
// Lists folders and walks folder trees. Paths are those of the logic ("c:\music\"). Files are
// read and changed through file_system.h.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/result.h"

namespace sonarith {

/// Bits of an entry's attributes. The values are those of file systems with drive letters.
namespace file_attribute {
inline constexpr std::uint32_t hidden = 2;
inline constexpr std::uint32_t system = 4;
inline constexpr std::uint32_t directory = 16;
inline constexpr std::uint32_t archive = 32;
} // namespace file_attribute

/// One entry of a folder.
struct FindRecord {
    std::uint32_t attributes = 0;
    /// Name without the folder; empty in a record that no call has filled.
    std::string name = {};
};

/// Identifies an open listing. Never 0.
using FindHandle = int;
/// The result of FindFirst() on failure.
inline constexpr FindHandle invalidFindHandle = -1;

/// One walk through a folder tree. Several listings may be open at the same time. A walk lists each
/// folder at most once, even if several paths or links lead to the folder. So the walk ends even if
/// links form a loop.
class DirectoryWalk {
  public:
    virtual ~DirectoryWalk() = default;

    /// Starts the listing of a folder and writes the first entry to `record`. `pattern` is the path
    /// of the folder, a backslash and "*.*". The listing consists of "." and "..", then all files
    /// and folders, including hidden ones. Pipes, sockets and devices are not listed. Fails if the
    /// folder does not exist, cannot be read or was listed before in this walk. Any other pattern
    /// also fails. A failure returns invalidFindHandle and leaves `record` unchanged.
    virtual FindHandle FindFirst(const std::string& pattern, FindRecord& record) = 0;
    /// Reads the next entry. Returns false and leaves `record` unchanged if no entry is left or if
    /// `handle` is not open. After the folder was removed, only entries that had already been read
    /// from the disk may follow.
    virtual bool FindNext(FindHandle handle, FindRecord& record) = 0;
    /// Does nothing for a handle that is not open.
    virtual void FindClose(FindHandle handle) = 0;
};

class Directories {
  public:
    virtual ~Directories() = default;

    [[nodiscard]] virtual std::unique_ptr<DirectoryWalk> startWalk() = 0;

    /// The absolute path of the existing folder `path`, with upper and lower case as in `path`. The
    /// result ends with a backslash only if it is the root of a drive ("c:\"). A relative path
    /// starts in the current folder.
    /// Error: pathNotFound if the path is not a folder or cannot be reached.
    [[nodiscard]] virtual Result<std::string> folder(const std::string& path) const = 0;

    /// The drives that exist now, as "c:", in the order of their letters.
    [[nodiscard]] virtual std::vector<std::string> drives() const = 0;
};

} // namespace sonarith
