// SPDX-License-Identifier: GPL-3.0-or-later
// Converts between the logic's unit of window measures and the desktop's: twips and
// device-independent pixels. The desktop scales its pixels on high-resolution screens; physical
// pixels are unknown here.
#pragma once

#include "platform/controls/twips.h"

namespace sonarith {

/// 1440 twips and 96 logical pixels to the inch.
inline constexpr int twipsPerPixel = 1440 / 96;

[[nodiscard]] constexpr Twips toTwips(int pixels) {
    return Twips(pixels * twipsPerPixel);
}

/// Rounded to the nearest pixel, halves upwards.
[[nodiscard]] constexpr int toPixels(Twips twips) {
    const int raised = twips.count() + twipsPerPixel / 2;
    // Integer division rounds towards zero; positions left of or above the screen's corner are
    // negative.
    return raised >= 0 ? raised / twipsPerPixel : -((-raised + twipsPerPixel - 1) / twipsPerPixel);
}

} // namespace sonarith
