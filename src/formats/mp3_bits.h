// SPDX-License-Identifier: GPL-3.0-or-later
// Converts four bytes to a text of binary digits, and such a text to a number. mp3_header.h
// interprets the digits.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/result.h"

namespace sonarith {

/// Four bytes in elements 1 to 4; element 0 is not used.
using FourBytes = std::array<std::uint8_t, 5>;

/// The digits of elements 1 to 4, highest bit first, without leading zeros; an empty text if all
/// four bytes are 0. The call changes `bytes`: afterwards, elements 1 to 4 are 0.
[[nodiscard]] std::string BytesToBits(FourBytes& bytes);

/// The value of the digits; any character but "1" counts as zero. Error: overflow if the value
/// needs more than 31 bits.
[[nodiscard]] Result<std::int32_t> BitsToLong(std::string_view digits);

} // namespace sonarith
