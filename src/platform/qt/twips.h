// SPDX-License-Identifier: GPL-3.0-or-later
// Converts between twips (the logic's unit of length for windows) and device-independent pixels
// (Qt's unit). On a high-resolution screen, Qt converts device-independent pixels to physical
// pixels.
#pragma once

#include "platform/controls/twips.h"

namespace sonarith {

/// An inch has 1440 twips and 96 device-independent pixels.
inline constexpr int twipsPerPixel = 1440 / 96;

[[nodiscard]] constexpr Twips toTwips(int pixels) {
    return Twips(pixels * twipsPerPixel);
}

/// Rounded to the nearest pixel. There are no ties, since twipsPerPixel is odd.
[[nodiscard]] constexpr int toPixels(Twips twips) {
    const int raised = twips.count() + twipsPerPixel / 2;
    // Positions left of the screen are negative. They have a formula of their own, because integer
    // division rounds towards zero.
    return raised >= 0 ? raised / twipsPerPixel : -((-raised + twipsPerPixel - 1) / twipsPerPixel);
}

} // namespace sonarith
