// SPDX-License-Identifier: GPL-3.0-or-later
// Checks whether a node's text names a file that may be renamed, or removed only from the tree.
// Looks only at the text, not at the level of the node or at the disk.
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
