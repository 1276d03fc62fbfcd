// SPDX-License-Identifier: GPL-3.0-or-later
// Writes whole numbers in bases up to 36. Calculates in doubles: above 2^53, rounding errors may
// change the digits.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/result.h"

namespace sonarith {

/// Converts the number `NumIn` in base `BaseIn` (2 to 36, letters in either case) to base `BaseOut`
/// (2 to 36). Returns the text "Error" if a base is not supported, or if `NumIn` is not a number in
/// base `BaseIn` or is beyond the range of double. Above 2^53, rounding errors may also cause
/// "Error". A `BaseOut` of 1 is accepted, too, but then the function never returns for a number
/// above 0.
[[nodiscard]] std::string ConvertBase(std::string_view NumIn, std::int16_t BaseIn,
                                      std::int16_t BaseOut);

/// The remainder of `Num` divided by `Div`. The quotient is rounded downwards, so the remainder has
/// the sign of `Div`. Error: divisionByZero.
[[nodiscard]] Result<double> ModDouble(double Num, double Div);

} // namespace sonarith
