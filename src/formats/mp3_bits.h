// SPDX-License-Identifier: GPL-3.0-or-later
// Four bytes as a text of binary digits, and such a text as a number. mp3_header.h knows what the
// digits mean.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/result.h"

namespace sonarith {

/// Four bytes in elements 1 to 4; element 0 is not used.
using FourBytes = std::array<std::uint8_t, 5>;

/// The digits of elements 1 to 4, highest bit first, without the zeros before the first one: 32
/// digits only for a first byte above 127, none for four zeros. Leaves the elements zero.
[[nodiscard]] std::string BytesToBits(FourBytes& bytes);

/// The number that the digits write; anything but a "1" counts as a zero. Error: overflow above 31
/// bits.
[[nodiscard]] Result<std::int32_t> BitsToLong(std::string_view digits);

} // namespace sonarith
