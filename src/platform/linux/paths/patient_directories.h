// SPDX-License-Identifier: GPL-3.0-or-later
// The machine's folders for the thread of the logic: what may hang is waited for with a bound, and
// the windows are painted meanwhile. How folders are listed stands in linux_directory_walk.h.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/directory_walk.h"
#include "platform/file_system.h"
#include "platform/linux/paths/patient_paths.h"

namespace sonarith {

/// A folder that is not answered for within PatientPaths::bound() is passed over in a walk, as one
/// that cannot be read, and at once while an earlier call to its mount has not returned; the walk
/// goes on with the next one. Everything else is as LinuxDirectories has it.
class PatientDirectories final : public Directories {
  public:
    /// Both outlive this and its walks. `files` tells the current folder.
    PatientDirectories(PatientPaths& paths, const FileSystem& files)
        : paths_(paths), files_(files) {}

    [[nodiscard]] std::unique_ptr<DirectoryWalk> startWalk() override;
    [[nodiscard]] Result<std::string> folder(const std::string& path) const override;
    /// Those known last, if no answer comes.
    [[nodiscard]] std::vector<std::string> drives() const override;

  private:
    PatientPaths& paths_;
    const FileSystem& files_;
    mutable std::vector<std::string> drives_;
};

} // namespace sonarith
