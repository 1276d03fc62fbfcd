// SPDX-License-Identifier: GPL-3.0-or-later
// Sizes shared by the layouts of the windows, in device-independent pixels.
#pragma once

namespace sonarith {

inline constexpr int windowMargin = 8;
inline constexpr int windowGap = 6;

} // namespace sonarith
