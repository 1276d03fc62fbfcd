// SPDX-License-Identifier: GPL-3.0-or-later
// Describes the visible part of a non-rectangular window as a list of rectangles that do not
// overlap. Data only; no function here changes a window.
#pragma once

#include <vector>

namespace sonarith {

/// Pixels relative to the window's top left corner. `right` and `bottom` are exclusive.
struct PixelRectangle {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    bool operator==(const PixelRectangle&) const = default;
};

/// An empty list means that no part of the window is visible.
struct WindowRegion {
    std::vector<PixelRectangle> rectangles;
    bool operator==(const WindowRegion&) const = default;
};

} // namespace sonarith
