// SPDX-License-Identifier: GPL-3.0-or-later
// Folders and what they hold, for whoever walks through them. Paths are the logic's own
// ("c:\music\"). It reads no file and changes nothing; that is file_system.h.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/result.h"

namespace sonarith {

/// Bits of an entry's attributes, the classic values of the file systems that have drive letters.
namespace file_attribute {
inline constexpr std::uint32_t hidden = 2;
inline constexpr std::uint32_t system = 4;
inline constexpr std::uint32_t directory = 16;
inline constexpr std::uint32_t archive = 32;
} // namespace file_attribute

/// One entry of a folder.
struct FindRecord {
    std::uint32_t attributes = 0;
    /// Without its folder and without a NUL; empty in a record that nothing was found for.
    std::string name = {};
};

/// A listing in progress. Never 0.
using FindHandle = int;
/// What FindFirst() returns for a failure: it is not 0 either.
inline constexpr FindHandle invalidFindHandle = -1;

/// One walk through a tree of folders, one listing after another or several at a time. Each folder
/// is listed once in a walk, whatever paths and links lead to it, so that a loop of links ends.
class DirectoryWalk {
  public:
    virtual ~DirectoryWalk() = default;

    /// Begins the listing of a folder: `pattern` is its path, a backslash and "*.*", which means
    /// all entries, hidden ones too. The first entries are "." and "..".
    /// invalidFindHandle, and `record` as it was, for a folder that does not exist, cannot be read
    /// or was listed before in this walk, and for any other pattern.
    virtual FindHandle FindFirst(const std::string& pattern, FindRecord& record) = 0;
    /// The next entry; false, and `record` as it was, at the end, for a folder that has vanished
    /// and for a handle that is not open.
    virtual bool FindNext(FindHandle handle, FindRecord& record) = 0;
    /// Nothing for a handle that is not open.
    virtual void FindClose(FindHandle handle) = 0;
};

class Directories {
  public:
    virtual ~Directories() = default;

    [[nodiscard]] virtual std::unique_ptr<DirectoryWalk> startWalk() = 0;

    /// The whole path of an existing folder, in the spelling given, without a backslash at its end
    /// but for the root of a drive ("c:\"). Relative paths begin in the current folder. Errors:
    /// pathNotFound for anything that is no folder or cannot be reached.
    [[nodiscard]] virtual Result<std::string> folder(const std::string& path) const = 0;

    /// The drives that there are now, as "c:", in the order of their letters.
    [[nodiscard]] virtual std::vector<std::string> drives() const = 0;
};

} // namespace sonarith
