// SPDX-License-Identifier: GPL-3.0-or-later
// Parses the disc device's replies and formats the text of the panel's display. No function here
// accesses the device; disc_poll.h queries it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "player/disc_state.h"

namespace sonarith {

/// Parses a reply as a Boolean. "true" in any letter case and each number other than 0 are true; an
/// empty or invalid reply is false.
[[nodiscard]] bool isTrueText(const std::string& reply);

/// Reads the number of tracks from the first two characters. If they are not a number, `disc` keeps
/// its track count.
void readTrackCount(std::string_view reply, DiscState& disc);

/// Parses a position "tt:mm:ss:ff" by the offsets of its characters. For a part that is not a
/// number, `disc` keeps the old value of that part.
void readPosition(std::string_view reply, DiscState& disc);

/// The text of the display: "[03] 01:05". Numbers of more than two digits are written in full.
[[nodiscard]] std::string positionText(const DiscState& disc);

} // namespace sonarith
