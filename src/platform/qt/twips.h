// SPDX-License-Identifier: GPL-3.0-or-later
// Between the logic's window measure and the desktop's: twips and device-independent pixels. The
// desktop scales its pixels by itself on fine screens; nothing here knows a real one.
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
    // Division rounds towards zero; places left of or above the screen's corner are negative.
    return raised >= 0 ? raised / twipsPerPixel : -((-raised + twipsPerPixel - 1) / twipsPerPixel);
}

} // namespace sonarith
