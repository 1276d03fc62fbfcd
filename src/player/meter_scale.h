// SPDX-License-Identifier: GPL-3.0-or-later
// Computes where the meter draws a level: the distances of the bar's top and of the trace from the
// upper edges of their pictures, in twips. level_meter.h reads the levels. A level is 0 (silence)
// to 32768.
#pragma once

#include <cstdint>

#include "platform/controls/twips.h"

namespace sonarith {

/// The level with the opposite sign. The lowest 32-bit number has no opposite and is returned
/// unchanged.
[[nodiscard]] constexpr std::int32_t negated(std::int32_t level) {
    return level == INT32_MIN ? level : -level;
}

/// The top of the bar inside a picture of `pictureHeight`: at the picture's bottom edge for
/// silence, so that the bar is invisible, and above the picture's top edge for levels too high for
/// the picture.
[[nodiscard]] constexpr Twips barTop(Twips pictureHeight, std::int32_t level) {
    constexpr double twipsOfBarForEachStep = 0.05;
    return Twips::rounded(pictureHeight.count() - level * twipsOfBarForEachStep);
}

/// The distance of the trace from the picture's upper edge: `silenceAt` for silence, smaller for
/// higher levels.
[[nodiscard]] constexpr double traceHeight(std::int32_t level, double silenceAt) {
    constexpr double fullLevel = 32768.0;
    constexpr double twipsOfFullLevel = 2000.0;
    return negated(level) / fullLevel * twipsOfFullLevel + silenceAt;
}

} // namespace sonarith
