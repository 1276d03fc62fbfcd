// SPDX-License-Identifier: GPL-3.0-or-later
// How far a decoding has come, in the arithmetic that the display asks for.
#pragma once

#include <cstdint>

#include "platform/result.h"

namespace sonarith {

/// `position` divided by `length`, times 100, rounded to an integer with halves to the even one.
/// Not held to 0 to 100. Errors: divisionByZero for a length of 0, overflow beyond 16 bits.
[[nodiscard]] Result<std::int16_t> percentageOf(std::int32_t position, std::int32_t length);

} // namespace sonarith
