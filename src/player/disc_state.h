// SPDX-License-Identifier: GPL-3.0-or-later
// The player's state of the disc in the drive. Its buttons and its poll share it; a close of the
// panel keeps it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace sonarith {

struct DiscState {
    /// The mode seen or commanded last. A skip plays on when it is true, and only moves when not.
    bool Playing = false;
    /// An audio disc has been read and the transport buttons are enabled.
    bool CDLoaded = false;
    std::int16_t NumTracks = 0;
    /// The length of each track as the device words it; [0] is track 1's.
    std::vector<std::string> TrackLengths;
    /// The position read last.
    std::int16_t CurTrack = 0;
    std::int16_t CurMin = 0;
    std::int16_t CurSec = 0;
};

} // namespace sonarith
