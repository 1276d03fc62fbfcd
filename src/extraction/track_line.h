// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the text of a track's line in the lists and the tree ("Track  1 - 00:03:05"), and finds
// the track number in such a text. It accesses neither the lists nor the tree.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/result.h"

namespace sonarith {

/// The line of track `number`. The number is right-aligned in two characters; of a longer number,
/// only the first two digits are written. `length` is the track's playing time as the device
/// returns it ("00:03:05").
[[nodiscard]] std::string trackLine(std::int32_t number, std::string_view length);

/// The track number in a line. Reads only the characters 6 to 8 (counted from 1), and skips blanks.
/// The result is the number with which these characters begin, or 0 if they begin with no number.
/// Error: overflow, for a number beyond 32 bits ("9e9").
[[nodiscard]] Result<std::int32_t> trackNumberIn(std::string_view line);

} // namespace sonarith
