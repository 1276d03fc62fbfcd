// SPDX-License-Identifier: GPL-3.0-or-later
// Checks whether a node's text ends like the name of a WAV or MP3 file. The program lets the user
// rename the file of such a node. It also lets the user remove the node from the tree and keep the
// file on disk. The level of the node and the disk are not checked.
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
