// SPDX-License-Identifier: GPL-3.0-or-later
#include "conversion/wav_path.h"

#include "settings/path_helpers.h"

namespace sonarith {

Result<std::string> wavPathFor(const std::string& mp3Path, const ProcessState& process) {
    const Result<std::string> base = FileBaseName(mp3Path);
    if (!base.ok()) {
        return base.error();
    }
    return process.settings.decodePath + "\\" + base.value() + ".wav";
}

} // namespace sonarith
