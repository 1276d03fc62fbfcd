// SPDX-License-Identifier: GPL-3.0-or-later
// The machine paths of recordings: the folder in which one begins, and the name under which it is
// saved. A save must not wait for a destination that hangs, because Cancel and the end of the
// program wait for it.
#pragma once

#include <filesystem>
#include <string>

#include "platform/linux/paths/patient_file_system.h"
#include "platform/waiting.h"

namespace sonarith {

class RecordingPaths {
  public:
    /// Twice this, for the call and for the search of the mount that hangs, is less than the 100 ms
    /// in which Cancel takes effect.
    static constexpr Waiting::Duration saveBound{40};

    /// `files` must outlive this.
    explicit RecordingPaths(const PatientFileSystem& files) : files_(files) {}

    /// The machine path of a recording's folder, a path of the logic. Empty if there is none or if
    /// its disk does not respond.
    [[nodiscard]] std::filesystem::path beginIn(const std::string& folder);
    /// The machine path of a recording's name, a path of the logic. If the disk does not respond
    /// within saveBound, a file in the folder of the last beginIn() is named as if it were new:
    /// with its own spelling, although the folder may contain the name in another case. Otherwise
    /// as beginIn().
    [[nodiscard]] std::filesystem::path saveAs(const std::string& file) const;

  private:
    const PatientFileSystem& files_;
    std::string folder_;                  ///< of the last recording, lower case, with a backslash
    std::filesystem::path machineFolder_; ///< the same folder
};

} // namespace sonarith
