// SPDX-License-Identifier: GPL-3.0-or-later
// The form of a track's line in lists and tree: "Track  1 - 00:03:05". Text only; it uses no list.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/result.h"

namespace sonarith {

/// The line of track `number`. The number is right-aligned in two characters and cut to fit;
/// `length` is the text from the device.
[[nodiscard]] std::string trackLine(std::int32_t number, std::string_view length);

/// The track number in a line: the number that the characters 6 to 8 (counted from 1) begin with,
/// or 0 if there is none. Error: overflow, for a number with an exponent ("9e9").
[[nodiscard]] Result<std::int32_t> trackNumberIn(std::string_view line);

} // namespace sonarith
