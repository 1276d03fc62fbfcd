// SPDX-License-Identifier: GPL-3.0-or-later
// Parses the disc device's replies and formats the texts of the panel's display. Pure functions;
// disc_poll.h queries the device.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "player/disc_state.h"

namespace sonarith {

/// Parses a reply as a Boolean: "true" in any case, or a number other than 0. An empty or invalid
/// reply is false.
[[nodiscard]] bool isTrueText(const std::string& reply);

/// The number of tracks is in the first two characters; `disc` keeps its number if they are none.
void readTrackCount(std::string_view reply, DiscState& disc);

/// Parses a position "tt:mm:ss:ff" by the offsets of its characters. A part that is no number keeps
/// the value in `disc`.
void readPosition(std::string_view reply, DiscState& disc);

/// "[03] 01:05". Longer numbers are not cut.
[[nodiscard]] std::string positionText(const DiscState& disc);

} // namespace sonarith
