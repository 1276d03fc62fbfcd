// SPDX-License-Identifier: GPL-3.0-or-later
// Looks up the keywords of CUE sheets, ignoring case. It parses no grammar.
#pragma once

#include <optional>
#include <string_view>

#include "platform/linux/disc/image_layout.h"

namespace sonarith::disc {

struct CueTrackMode {
    TrackKind kind = TrackKind::audio;
    int sectorBytes = bytesPerSector; ///< size of one sector in the file
};

/// The mode that `word` names ("AUDIO", "MODE1/2352" and similar); empty if there is no such mode.
[[nodiscard]] std::optional<CueTrackMode> cueTrackMode(std::string_view word);
/// The format that `word` names ("BINARY", "MOTOROLA" or "WAVE"); empty for any other word.
[[nodiscard]] std::optional<ImageFormat> cueFileFormat(std::string_view word);
/// Whether a line that begins with `word` only describes the disc or a track, without an effect on
/// the sound.
[[nodiscard]] bool isCueDescription(std::string_view word);

} // namespace sonarith::disc
