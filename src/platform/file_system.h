// SPDX-License-Identifier: GPL-3.0-or-later
// The interface through which the logic uses files and folders. Its paths consist of a drive letter
// and names separated by backslashes ("c:\music\track1.wav"). The implementation maps them to the
// paths of the machine.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/binary_file.h"
#include "platform/result.h"

namespace sonarith {

using FileTime = std::chrono::system_clock::time_point;

class FileSystem {
  public:
    virtual ~FileSystem() = default;

    /// Length in bytes. Errors: fileNotFound, pathNotFound, permissionDenied.
    [[nodiscard]] virtual Result<std::int64_t> fileLength(const std::string& path) const = 0;
    [[nodiscard]] virtual bool fileExists(const std::string& path) const = 0;
    /// Time of the last change to the file's content. Errors: as fileLength().
    [[nodiscard]] virtual Result<FileTime> fileDate(const std::string& path) const = 0;

    /// Opens a file in place: content, permissions, owner, links and times stay unchanged until
    /// something is written. Never waits for another program. `write` and `readWrite` create a
    /// missing file. Errors: fileNotFound (only for `read`), pathNotFound, pathFileAccess (for a
    /// folder), permissionDenied (also for a pipe, socket or device).
    [[nodiscard]] virtual Result<std::unique_ptr<BinaryFile>> openBinary(const std::string& path,
                                                                         FileAccess access) = 0;

    /// If `to` exists, it is not replaced, and the error is fileAlreadyExists. A rename that
    /// changes only the case is allowed.
    virtual Status rename(const std::string& from, const std::string& to) = 0;
    /// Opens a file for binary writing and closes it at once. Creates a missing file; leaves an
    /// existing file unchanged. Errors: permissionDenied, pathNotFound, pathFileAccess (for a
    /// folder).
    virtual Status touchForWriting(const std::string& path) = 0;
    virtual Status removeFile(const std::string& path) = 0;

    /// Sets the drive for relative names. `path` begins with the drive's letter and a colon; any
    /// text after the colon is ignored.
    virtual Status changeDrive(const std::string& path) = 0;
    /// Changes the current folder. `path` is absolute, or relative to the current folder.
    virtual Status changeFolder(const std::string& path) = 0;
    [[nodiscard]] virtual std::string currentFolder() const = 0;
    /// Creates one folder. Error: pathFileAccess (75) if anything of that name exists.
    virtual Status makeFolder(const std::string& name) = 0;

    /// The folder of the program, without a trailing backslash.
    [[nodiscard]] virtual std::string programFolder() const = 0;
};

} // namespace sonarith
