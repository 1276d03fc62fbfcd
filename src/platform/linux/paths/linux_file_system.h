// SPDX-License-Identifier: GPL-3.0-or-later
// Files and folders of the Linux machine under the logic's paths. One object holds one current
// drive and folder, which it also makes the process's own.
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
    /// Starts in the process's current folder. `programFolder` is a machine path. The map must
    /// outlive this.
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

    /// Where a path of the logic, relative ones too, leads on the machine.
    [[nodiscard]] Result<Located> locate(const std::string& path,
                                         PathCase pathCase = PathCase::maybeLowered) const;

  private:
    /// What the system says of an ordinary file; anything else is fileNotFound.
    [[nodiscard]] Result<struct stat> statusOf(const std::string& path) const;
    /// As locate(), but a path that names the same folder in the same words as `knownPath` means
    /// the folder where that was found.
    [[nodiscard]] Result<Located> locateBeside(const Result<Located>& known,
                                               const std::string& knownPath,
                                               const std::string& path) const;

    PathMap& paths_;
    std::string programFolder_;
    char currentLetter_ = 'C';
    /// Of each drive that was current, the folder that was: a drive is come back to where it was
    /// left.
    std::map<char, std::string> currentFolders_;
};

} // namespace sonarith
