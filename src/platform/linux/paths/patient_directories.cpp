// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/patient_directories.h"

#include <utility>

#include "platform/linux/files/file_error.h"
#include "platform/linux/paths/path_names.h"
#include "platform/linux/paths/patient_walk.h"

namespace sonarith {

std::unique_ptr<DirectoryWalk> PatientDirectories::startWalk() {
    return std::make_unique<PatientWalk>(paths_);
}

Result<std::string> PatientDirectories::folder(const std::string& path) const {
    if (path.empty()) {
        return fileError(ErrorNumber::pathNotFound);
    }
    const std::string whole = absolutePath(path, files_.currentFolder());
    const auto found = paths_.ask(
        {whole}, [whole](MachineFiles& machine) { return machine.directories().folder(whole); });
    return found ? *found : fileError(ErrorNumber::pathNotFound);
}

std::vector<std::string> PatientDirectories::drives() const {
    if (auto drives =
            paths_.ask({}, [](MachineFiles& machine) { return machine.directories().drives(); })) {
        drives_ = std::move(*drives);
    }
    return drives_;
}

} // namespace sonarith
