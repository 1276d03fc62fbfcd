// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the disc device's replies and words what the panel's display shows. Pure functions; when
// the device is asked is decided in disc_poll.h.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "player/disc_state.h"

namespace sonarith {

/// A reply read as a Boolean: "true" in any case, or a number other than 0. An empty or senseless
/// reply is false.
[[nodiscard]] bool isTrueText(const std::string& reply);

/// The count of tracks is the first two characters; `disc` keeps its own if they are no number.
void readTrackCount(std::string_view reply, DiscState& disc);

/// Reads a position "tt:mm:ss:ff" by the places of its characters. A part that is no number leaves
/// what `disc` had.
void readPosition(std::string_view reply, DiscState& disc);

/// "[03] 01:05". Longer numbers take the room that they need.
[[nodiscard]] std::string positionText(const DiscState& disc);

} // namespace sonarith
