// SPDX-License-Identifier: GPL-3.0-or-later
// Converts texts to numbers and numbers to columns by the logic's rules: '.' is the decimal point
// in every locale, digits are 0 to 9. No thousands separators, no hexadecimal, no "inf" or "nan".
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/result.h"

namespace sonarith {

/// The number at the start of `text`, 0 if there is none: "12abc" is 12, " 1 2" is 12 (blanks, tabs
/// and line ends are skipped everywhere). Sign, decimals and exponent are part of it. A number
/// beyond the range of double counts as none. Never infinite.
[[nodiscard]] double numberOf(std::string_view text);

/// The number that the whole text represents, ignoring blanks around it. Errors: typeMismatch (any
/// other text, including the empty one), overflow (beyond double).
[[nodiscard]] Result<double> toDouble(std::string_view text);

/// As toDouble(), rounded to an integer (halves to even). Errors: typeMismatch; overflow if the
/// rounded number does not fit.
[[nodiscard]] Result<std::int16_t> toInteger16(std::string_view text);
[[nodiscard]] Result<std::int32_t> toInteger32(std::string_view text);

/// A number rounded to an integer, halves to even. Error: overflow, also for infinity and NaN (a
/// division by zero).
[[nodiscard]] Result<std::int16_t> roundedToInteger16(double number);
[[nodiscard]] Result<std::int32_t> roundedToInteger32(double number);

/// The text right-aligned in a field of `width` characters. A longer text is cut to its first
/// `width` characters.
[[nodiscard]] std::string rightAligned(std::string_view text, std::size_t width);

} // namespace sonarith
