// SPDX-License-Identifier: GPL-3.0-or-later
// The name of the WAV file that an MP3 becomes. A text alone: nothing here looks at a disk.
#pragma once

#include <string>

#include "platform/result.h"
#include "settings/process_state.h"

namespace sonarith {

/// In the destination folder, by the MP3's base name alone: files of one name in different folders
/// share one WAV. Errors: as FileBaseName().
[[nodiscard]] Result<std::string> wavPathFor(const std::string& mp3Path,
                                             const ProcessState& process);

} // namespace sonarith
