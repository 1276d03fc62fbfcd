// SPDX-License-Identifier: GPL-3.0-or-later
// Numbers out of text and into columns, as the logic converts them: '.' is the decimal point in
// every locale, digits are 0 to 9. No thousands separators, no hexadecimal, no "inf" or "nan".
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/result.h"

namespace sonarith {

/// The number that `text` begins with, 0 if it begins with none: "12abc" is 12, " 1 2" is 12
/// (blanks, tabs and line ends are skipped wherever they stand). Sign, decimals and an exponent are
/// part of it. A number beyond the range of double counts as none. Never infinite.
[[nodiscard]] double numberOf(std::string_view text);

/// The number that the whole text is, blanks around it aside.
/// Errors: typeMismatch (anything else, the empty text too), overflow (beyond double).
[[nodiscard]] Result<double> toDouble(std::string_view text);

/// As toDouble(), rounded to an integer (halves to the even one).
/// Errors: typeMismatch; overflow if the rounded number does not fit.
[[nodiscard]] Result<std::int16_t> toInteger16(std::string_view text);
[[nodiscard]] Result<std::int32_t> toInteger32(std::string_view text);

/// A number rounded to an integer, halves to the even one. Error: overflow, also for what is no
/// number (a division by zero).
[[nodiscard]] Result<std::int16_t> roundedToInteger16(double number);
[[nodiscard]] Result<std::int32_t> roundedToInteger32(double number);

/// The text in a field of `width` characters, blanks before it. Of a text that is too long the
/// field takes the first `width` characters.
[[nodiscard]] std::string rightAligned(std::string_view text, std::size_t width);

} // namespace sonarith
