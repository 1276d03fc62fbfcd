// SPDX-License-Identifier: GPL-3.0-or-later
// The keywords of CUE sheets and their meanings, case-insensitive. It parses no grammar.
#pragma once

#include <optional>
#include <string_view>

#include "platform/linux/disc/image_layout.h"

namespace sonarith::disc {

struct CueTrackMode {
    TrackKind kind = TrackKind::audio;
    int sectorBytes = bytesPerSector; ///< size of one sector in the file
};

/// "AUDIO", "MODE1/2352" and similar modes.
[[nodiscard]] std::optional<CueTrackMode> cueTrackMode(std::string_view word);
/// "BINARY", "MOTOROLA" or "WAVE".
[[nodiscard]] std::optional<ImageFormat> cueFileFormat(std::string_view word);
/// Keywords of lines that describe the disc and its tracks and do not affect the sound.
[[nodiscard]] bool isCueDescription(std::string_view word);

} // namespace sonarith::disc
