// SPDX-License-Identifier: GPL-3.0-or-later
// Checks whether a node's text names a file that may be renamed or removed. Looks only at the text:
// checks neither the level of the node in the tree nor whether the file exists.
#pragma once

#include <string>

namespace sonarith {

/// Whether the text ends in ".wav", ".WAV", ".mp3" or ".MP3"; an ending of mixed case does not
/// count.
[[nodiscard]] inline bool hasFileEnding(const std::string& text) {
    return text.ends_with(".wav") || text.ends_with(".WAV") || text.ends_with(".mp3") ||
           text.ends_with(".MP3");
}

} // namespace sonarith
