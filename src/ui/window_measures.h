// SPDX-License-Identifier: GPL-3.0-or-later
// Defines sizes that the layouts of the windows share, in device-independent pixels.
#pragma once

namespace sonarith {

inline constexpr int windowMargin = 8;
inline constexpr int windowGap = 6;

} // namespace sonarith
