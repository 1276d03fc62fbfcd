// SPDX-License-Identifier: GPL-3.0-or-later
// Stores what the player knows about the disc in the drive. The buttons and the poll share this
// state; it is kept when the player's panel (Form4) is unloaded.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace sonarith {

struct DiscState {
    /// Whether the mode that was last read or commanded is "playing". If false, a skip only seeks.
    bool Playing = false;
    /// Whether an audio disc has been read. Switching the player off does not change this value.
    bool CDLoaded = false;
    std::int16_t NumTracks = 0;
    /// The length of each track as returned by the device; [0] is for track 1.
    std::vector<std::string> TrackLengths;
    /// The last position that was read. Transport::play_Click() also sets CurTrack.
    std::int16_t CurTrack = 0;
    std::int16_t CurMin = 0;
    std::int16_t CurSec = 0;
};

} // namespace sonarith
