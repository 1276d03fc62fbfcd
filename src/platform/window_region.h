// SPDX-License-Identifier: GPL-3.0-or-later
// The part of a window that remains when some of it is cut away: non-overlapping rectangles of
// pixels. It computes nothing and uses no window.
#pragma once

#include <vector>

namespace sonarith {

/// Pixels relative to the window's corner; (right, bottom) is exclusive.
struct PixelRectangle {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    bool operator==(const PixelRectangle&) const = default;
};

/// An empty list means that nothing of the window remains.
struct WindowRegion {
    std::vector<PixelRectangle> rectangles;
    bool operator==(const WindowRegion&) const = default;
};

} // namespace sonarith
