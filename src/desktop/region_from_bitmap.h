// SPDX-License-Identifier: GPL-3.0-or-later
// Turns a picture into a window region by cutting one colour away. Pure logic; no window is touched
// here.
#pragma once

#include <optional>

#include "platform/pixel_picture.h"
#include "platform/window_region.h"

namespace sonarith {

/// What is left of the rectangle of `bitmap` without its pixels of the colour `transparent`. Rows
/// that are left alike share their rectangles. A picture that is all of that colour gives a region
/// without rectangles; without a picture (null) there is no region at all.
[[nodiscard]] std::optional<WindowRegion> RegionFromBitmap(const PixelPicture* bitmap,
                                                           PixelColour transparent);

} // namespace sonarith
