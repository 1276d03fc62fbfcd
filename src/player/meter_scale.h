// SPDX-License-Identifier: GPL-3.0-or-later
// Where a level is drawn: the bar's top and the trace's height, in twips. Arithmetic alone; which
// level is read, and when, is decided in level_meter.h. A level is 0 (silence) to 32768.
#pragma once

#include <cstdint>

#include "platform/controls/twips.h"

namespace sonarith {

/// A level without its sign. The lowest 32-bit number has no counterpart and stays.
[[nodiscard]] constexpr std::int32_t negated(std::int32_t level) {
    return level == INT32_MIN ? level : -level;
}

/// The top of the bar inside a picture of `pictureHeight`: at its bottom edge for silence, so that
/// nothing of the bar shows, and above its upper edge for levels that more than fill it.
[[nodiscard]] constexpr Twips barTop(Twips pictureHeight, std::int32_t level) {
    constexpr double twipsOfBarForEachStep = 0.05;
    return Twips::rounded(pictureHeight.count() - level * twipsOfBarForEachStep);
}

/// The trace's place from the picture's upper edge: `silenceAt` for silence, less for more.
[[nodiscard]] constexpr double traceHeight(std::int32_t level, double silenceAt) {
    constexpr double fullLevel = 32768.0;
    constexpr double twipsOfFullLevel = 2000.0;
    return negated(level) / fullLevel * twipsOfFullLevel + silenceAt;
}

} // namespace sonarith
