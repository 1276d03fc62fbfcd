// SPDX-License-Identifier: GPL-3.0-or-later
// The one line form in which a track stands in lists and tree: "Track  1 - 00:03:05". This is the
// text alone; which list holds it is not known here.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/result.h"

namespace sonarith {

/// The line of track `number`. The number stands right-aligned in two characters, which drop what
/// does not fit; `length` is the device's own text.
[[nodiscard]] std::string trackLine(std::int32_t number, std::string_view length);

/// The track number in a line: its three characters from position 6 (from 1), read leniently. 0 for
/// a text that holds no number there, the empty text among them. Error: overflow, for one with an
/// exponent ("9e9").
[[nodiscard]] Result<std::int32_t> trackNumberIn(std::string_view line);

} // namespace sonarith
