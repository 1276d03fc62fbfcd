// SPDX-License-Identifier: GPL-3.0-or-later
// Whole numbers as texts in bases up to 36. They are worked out in doubles: above 2^53 the digits
// are those of a rounded number.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/result.h"

namespace sonarith {

/// The number that `NumIn` writes in base `BaseIn` (2 to 36, letters in either case), written in
/// base `BaseOut`; the text "Error" for what is no such number. `BaseOut` is 2 to 36. 1 is taken
/// too, and never returns for a number above 0.
[[nodiscard]] std::string ConvertBase(std::string_view NumIn, std::int16_t BaseIn,
                                      std::int16_t BaseOut);

/// What is left of `Num` when whole `Div` are taken off, rounded downwards: the sign is that of
/// `Div`. Error: divisionByZero.
[[nodiscard]] Result<double> ModDouble(double Num, double Div);

} // namespace sonarith
