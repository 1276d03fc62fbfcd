// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/recording_paths.h"

#include <cstddef>
#include <utility>

#include "platform/linux/paths/machine_names.h"
#include "platform/text/unicode.h"

namespace sonarith {

std::filesystem::path RecordingPaths::beginIn(const std::string& folder) {
    std::filesystem::path found = files_.machinePath(folder);
    if (!found.empty()) {
        folder_ = lowerCase(folder) + (folder.ends_with('\\') ? "" : "\\");
        machineFolder_ = found;
    }
    return found;
}

std::filesystem::path RecordingPaths::saveAs(const std::string& file) const {
    const std::size_t nameStart = file.rfind('\\') + 1;
    if (folder_.empty() || lowerCase(file.substr(0, nameStart)) != folder_) {
        return files_.machinePath(file);
    }
    std::filesystem::path found = files_.machinePathWithin(saveBound, file);
    return found.empty() ? machineFolder_ / machineName(file.substr(nameStart)) : found;
}

} // namespace sonarith
