// SPDX-License-Identifier: GPL-3.0-or-later
// The words of CUE sheets and what they mean, in any case of letters. No grammar is known here.
#pragma once

#include <optional>
#include <string_view>

#include "platform/linux/disc/image_layout.h"

namespace sonarith::disc {

struct CueTrackMode {
    TrackKind kind = TrackKind::audio;
    int sectorBytes = bytesPerSector; ///< what one sector takes up in the file
};

/// "AUDIO", "MODE1/2352" and their like.
[[nodiscard]] std::optional<CueTrackMode> cueTrackMode(std::string_view word);
/// "BINARY", "MOTOROLA" or "WAVE".
[[nodiscard]] std::optional<ImageFormat> cueFileFormat(std::string_view word);
/// Keywords of lines that describe the disc and its tracks and change nothing of the sound.
[[nodiscard]] bool isCueDescription(std::string_view word);

} // namespace sonarith::disc
