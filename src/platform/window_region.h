// SPDX-License-Identifier: GPL-3.0-or-later
// The part of a window that is left when some of it is cut away: rectangles of pixels that do not
// overlap. It computes nothing and knows no window.
#pragma once

#include <vector>

namespace sonarith {

/// From (left, top) up to, not including, (right, bottom); in pixels from the window's corner.
struct PixelRectangle {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    bool operator==(const PixelRectangle&) const = default;
};

/// No rectangle at all: nothing is left.
struct WindowRegion {
    std::vector<PixelRectangle> rectangles;
    bool operator==(const WindowRegion&) const = default;
};

} // namespace sonarith
