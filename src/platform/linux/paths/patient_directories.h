// SPDX-License-Identifier: GPL-3.0-or-later
// The machine's folders for the thread of the logic: calls that may hang are waited for with a
// bound, and the windows are repainted meanwhile. linux_directory_walk.h lists the folders.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/directory_walk.h"
#include "platform/file_system.h"
#include "platform/linux/paths/patient_paths.h"

namespace sonarith {

/// A folder that does not respond within PatientPaths::bound() is skipped in a walk like an
/// unreadable one, and at once while an earlier call to its mount has not returned; the walk
/// continues with the next one. Everything else is as in LinuxDirectories.
class PatientDirectories final : public Directories {
  public:
    /// Both must outlive this and its walks. `files` provides the current folder.
    PatientDirectories(PatientPaths& paths, const FileSystem& files)
        : paths_(paths), files_(files) {}

    [[nodiscard]] std::unique_ptr<DirectoryWalk> startWalk() override;
    [[nodiscard]] Result<std::string> folder(const std::string& path) const override;
    /// The previous result if the call times out.
    [[nodiscard]] std::vector<std::string> drives() const override;

  private:
    PatientPaths& paths_;
    const FileSystem& files_;
    mutable std::vector<std::string> drives_;
};

} // namespace sonarith
