// SPDX-License-Identifier: GPL-3.0-or-later
// Accesses files and folders of the Linux machine by the logic's paths. A LinuxFileSystem has one
// current drive and folder; when these change, it also changes the process's current folder.
#pragma once

#include <map>
#include <memory>
#include <string>

#include <sys/stat.h>

#include "platform/file_system.h"
#include "platform/linux/paths/path_map.h"

namespace sonarith {

class LinuxFileSystem final : public FileSystem {
  public:
    /// Starts in the process's current folder. `programFolder` is a machine path. `paths` must
    /// outlive this object.
    LinuxFileSystem(PathMap& paths, const std::string& programFolder);

    [[nodiscard]] Result<std::int64_t> fileLength(const std::string& path) const override;
    [[nodiscard]] bool fileExists(const std::string& path) const override;
    [[nodiscard]] Result<FileTime> fileDate(const std::string& path) const override;
    [[nodiscard]] Result<std::unique_ptr<BinaryFile>> openBinary(const std::string& path,
                                                                 FileAccess access) override;
    Status rename(const std::string& from, const std::string& to) override;
    Status touchForWriting(const std::string& path) override;
    Status removeFile(const std::string& path) override;
    Status changeDrive(const std::string& path) override;
    Status changeFolder(const std::string& path) override;
    [[nodiscard]] std::string currentFolder() const override;
    Status makeFolder(const std::string& name) override;
    [[nodiscard]] std::string programFolder() const override { return programFolder_; }

    /// The machine path of `path`, a path of the logic that may be relative.
    [[nodiscard]] Result<Located> locate(const std::string& path,
                                         PathCase pathCase = PathCase::maybeLowered) const;

  private:
    /// The stat record of a regular file. A folder, a pipe or a device gives the error
    /// fileNotFound, as if it did not exist.
    [[nodiscard]] Result<struct stat> statusOf(const std::string& path) const;
    /// Like locate(), but does not locate a known folder again. `known` is the result for
    /// `knownPath`. If `path` and `knownPath` have the same text before the last name, only the
    /// last name is located, in the folder of `known`. The whole path is located if `known` is an
    /// error or the root of a drive, or if the last name is empty, "." or "..".
    [[nodiscard]] Result<Located> locateBeside(const Result<Located>& known,
                                               const std::string& knownPath,
                                               const std::string& path) const;

    PathMap& paths_;
    std::string programFolder_;
    char currentLetter_ = 'C';
    /// The last current folder of each drive, which is restored by a change to that drive.
    std::map<char, std::string> currentFolders_;
};

} // namespace sonarith
