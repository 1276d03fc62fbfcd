// SPDX-License-Identifier: GPL-3.0-or-later
// The length below which a file counts as empty.
#pragma once

#include <cstdint>

namespace sonarith {

/// In bytes. A shorter file contains no audio worth showing or decoding: a WAV header alone has 44
/// bytes. 100 is a round number that is not based on a measurement.
inline constexpr std::int64_t leastFileLength = 100;

} // namespace sonarith
