// SPDX-License-Identifier: GPL-3.0-or-later
// Accesses the machine's files for the logic thread: limits the wait for a call that may
// hang, and repaints the windows during the wait. The calls themselves are in linux_file_system.h.
//
// A new operation `op` that accesses the disk needs one statement in its function:
//     return answered(paths_.ask(
//         {whole(path)}, [path = whole(path)](MachineFiles& machine) {
//             return machine.files().op(path);
//         }));
#pragma once

#include <map>
#include <string>

#include "platform/file_system.h"
#include "platform/linux/paths/patient_paths.h"

namespace sonarith {

/// An operation times out if its disk does not respond within PatientPaths::bound(). An operation
/// that returns a Result or a Status then fails with deviceUnavailable; fileExists() then returns
/// false. While an earlier call to the same mount has not returned, an operation fails in the same
/// way, but at once. An operation that timed out may still be carried out later. Everything else is
/// as in LinuxFileSystem. This object itself stores the current drive and folder (see
/// currentFolders_).
class PatientFileSystem final : public FileSystem {
  public:
    /// `paths` must outlive this object; its services() must also outlive the files that this
    /// object opens. Starts in the process's current folder, or in "C:\" if the call that reads
    /// this folder times out.
    explicit PatientFileSystem(PatientPaths& paths);

    [[nodiscard]] Result<std::int64_t> fileLength(const std::string& path) const override;
    [[nodiscard]] bool fileExists(const std::string& path) const override;
    [[nodiscard]] Result<FileTime> fileDate(const std::string& path) const override;
    /// The waits for calls of the opened file are limited in the same way (patient_binary_file.h).
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

    // For modules that use machine paths.

    /// The machine path of a path of the logic; empty if the path is invalid or its disk does not
    /// respond.
    [[nodiscard]] std::string machinePath(const std::string& path) const;
    /// Like machinePath(), but waits at most `bound`.
    [[nodiscard]] std::string machinePathWithin(Waiting::Duration bound,
                                                const std::string& path) const;
    /// As PathMap::toLogic; empty if a disk does not respond.
    [[nodiscard]] std::string toLogic(const std::string& machinePath) const;

  private:
    /// The result of a change of folder, and the current folder after it.
    struct Change {
        Status status;
        std::string folder;
    };

    [[nodiscard]] std::string whole(const std::string& path) const;
    Status take(std::optional<Change> change);

    PatientPaths& paths_;
    std::string currentFolder_;
    std::string programFolder_;
    /// The last current folder of each drive. LinuxFileSystem also stores these folders, but the
    /// LinuxFileSystem object is replaced when a call times out.
    std::map<char, std::string> currentFolders_;
};

} // namespace sonarith
