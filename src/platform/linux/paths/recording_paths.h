// SPDX-License-Identifier: GPL-3.0-or-later
// Translates two paths of a recording to machine paths: the folder in which the recording begins,
// and the path under which it is saved. A save to that folder waits only briefly for a disk that
// does not respond, because Cancel and the end of the program wait for the save.
#pragma once

#include <filesystem>
#include <string>

#include "platform/linux/paths/patient_file_system.h"
#include "platform/waiting.h"

namespace sonarith {

class RecordingPaths {
  public:
    /// A save to the folder in which the recording began may wait this long twice: for the file
    /// call that translates the file's path, and for the search for the mount that hangs. Both
    /// waits together are shorter than the 100 ms within which Cancel must take effect.
    static constexpr Waiting::Duration saveBound{40};

    /// `files` must outlive this object.
    explicit RecordingPaths(const PatientFileSystem& files) : files_(files) {}

    /// The machine path of a recording's folder; `folder` is a path of the logic. Empty if the path
    /// is invalid or its disk does not respond.
    [[nodiscard]] std::filesystem::path beginIn(const std::string& folder);
    /// The machine path of a recording's file; `file` is a path of the logic. For a file in the
    /// folder of the last successful beginIn(), the wait for the disk is shorter (saveBound). If
    /// this disk does not respond in time, the file's name is used as given, even if the folder
    /// contains a file whose name differs only in case. A file in another folder is translated as
    /// by beginIn().
    [[nodiscard]] std::filesystem::path saveAs(const std::string& file) const;

  private:
    const PatientFileSystem& files_;
    /// The folder of the last successful beginIn(), in lower case, with a trailing backslash.
    std::string folder_;
    std::filesystem::path machineFolder_; ///< the same folder
};

} // namespace sonarith
