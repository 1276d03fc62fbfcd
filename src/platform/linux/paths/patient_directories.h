// SPDX-License-Identifier: GPL-3.0-or-later
// Accesses the machine's folders for the logic thread: limits the wait for a call that may
// hang, and repaints the windows during the wait. The accesses themselves are those of
// LinuxDirectories (linux_directory_walk.h).
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/directory_walk.h"
#include "platform/file_system.h"
#include "platform/linux/paths/patient_paths.h"

namespace sonarith {

/// A walk skips a folder that does not respond within PatientPaths::bound(), like an unreadable
/// folder. If an earlier call to the folder's mount has not returned yet, the walk does not wait
/// and skips the folder at once. Everything else is as in LinuxDirectories.
class PatientDirectories final : public Directories {
  public:
    /// Both arguments must outlive this object and its walks. `files` provides the current folder.
    PatientDirectories(PatientPaths& paths, const FileSystem& files)
        : paths_(paths), files_(files) {}

    [[nodiscard]] std::unique_ptr<DirectoryWalk> startWalk() override;
    /// Fails with pathNotFound if PatientPaths::ask() returns no result.
    [[nodiscard]] Result<std::string> folder(const std::string& path) const override;
    /// Returns the previous list if PatientPaths::ask() returns no result.
    [[nodiscard]] std::vector<std::string> drives() const override;

  private:
    PatientPaths& paths_;
    const FileSystem& files_;
    mutable std::vector<std::string> drives_;
};

} // namespace sonarith
