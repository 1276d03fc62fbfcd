// SPDX-License-Identifier: GPL-3.0-or-later
// Which files are taken for empty ones.
#pragma once

#include <cstdint>

namespace sonarith {

/// In bytes. A shorter file holds no sound worth showing or decoding: a bare WAV header has 44
/// bytes. A round figure, not a measured one.
inline constexpr std::int64_t leastFileLength = 100;

} // namespace sonarith
