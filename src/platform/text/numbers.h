// SPDX-License-Identifier: GPL-3.0-or-later
// Converts texts to numbers by the logic's rules: '.' is the decimal point in every locale, digits
// are 0 to 9, and there are no thousands separators, no hexadecimal numbers, no "inf" and no "nan".
// Also aligns texts in columns.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/result.h"

namespace sonarith {

/// The number at the start of `text`: "12abc" is 12. It may have a sign, decimals and an exponent.
/// Blanks, tabs and line ends are skipped everywhere: " 1 2" is 12. Returns 0 if there is no
/// number, or if the number is outside the range of double.
[[nodiscard]] double numberOf(std::string_view text);

/// The number that the whole text represents, ignoring blanks, tabs and line ends around it. A
/// number that is too close to 0 for a double becomes 0. Errors: typeMismatch if the text is empty
/// or not a number; overflow if the number is too large for a double.
[[nodiscard]] Result<double> toDouble(std::string_view text);

/// As toDouble(), but rounded to an integer (halves to even). Errors: typeMismatch; overflow if the
/// rounded number does not fit.
[[nodiscard]] Result<std::int16_t> toInteger16(std::string_view text);
[[nodiscard]] Result<std::int32_t> toInteger32(std::string_view text);

/// Rounds a number to an integer, halves to even. Error: overflow if the rounded number does not
/// fit. Infinity and NaN never fit.
[[nodiscard]] Result<std::int16_t> roundedToInteger16(double number);
[[nodiscard]] Result<std::int32_t> roundedToInteger32(double number);

/// The text right-aligned in a field of `width` characters. A longer text is truncated to its first
/// `width` characters.
[[nodiscard]] std::string rightAligned(std::string_view text, std::size_t width);

} // namespace sonarith
