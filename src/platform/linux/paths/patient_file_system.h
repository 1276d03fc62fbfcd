// SPDX-License-Identifier: GPL-3.0-or-later
// The machine's files for the thread of the logic: what may hang is waited for with a bound, and
// the windows are painted meanwhile. How a call is made stands in linux_file_system.h.
//
// A further operation that touches the disk is one line here:
//     return answered(paths_.ask({whole}, [whole](MachineFiles& m) { return m.files().op(whole);
//     }));
#pragma once

#include <map>
#include <string>

#include "platform/file_system.h"
#include "platform/linux/paths/patient_paths.h"

namespace sonarith {

/// Each operation that touches a disk fails with deviceUnavailable if that has not answered within
/// PatientPaths::bound(), and at once while an earlier call to its mount has not returned. An
/// operation that was not answered may still be carried out later. Everything else is as
/// LinuxFileSystem has it; the current drive and folder are kept here.
class PatientFileSystem final : public FileSystem {
  public:
    /// `paths` outlives this and the files that it opens. Begins where the process stands.
    explicit PatientFileSystem(PatientPaths& paths);

    [[nodiscard]] Result<std::int64_t> fileLength(const std::string& path) const override;
    [[nodiscard]] bool fileExists(const std::string& path) const override;
    [[nodiscard]] Result<FileTime> fileDate(const std::string& path) const override;
    /// The calls of the opened file are waited for likewise (patient_binary_file.h).
    [[nodiscard]] Result<std::unique_ptr<BinaryFile>> openBinary(const std::string& path,
                                                                 FileAccess access) override;
    Status rename(const std::string& from, const std::string& to) override;
    Status touchForWriting(const std::string& path) override;
    Status removeFile(const std::string& path) override;
    Status changeDrive(const std::string& path) override;
    Status changeFolder(const std::string& path) override;
    [[nodiscard]] std::string currentFolder() const override { return currentFolder_; }
    Status makeFolder(const std::string& name) override;
    [[nodiscard]] std::string programFolder() const override { return programFolder_; }

    // For who passes paths to other parts of the machine.

    /// The machine path of a path of the logic; empty if it names none, or its disk does not
    /// answer.
    [[nodiscard]] std::string machinePath(const std::string& path) const;
    /// As PathMap::toLogic; empty if a disk does not answer.
    [[nodiscard]] std::string toLogic(const std::string& machinePath) const;

  private:
    /// What a change of folder came to, and the current folder after it.
    struct Change {
        Status status;
        std::string folder;
    };

    [[nodiscard]] std::string whole(const std::string& path) const;
    Status take(std::optional<Change> change);

    PatientPaths& paths_;
    std::string currentFolder_;
    std::string programFolder_;
    /// Of each drive that was current, the folder that was: the machine's files forget it when a
    /// call is left behind with them.
    std::map<char, std::string> currentFolders_;
};

} // namespace sonarith
