// SPDX-License-Identifier: GPL-3.0-or-later
// Computes a window region from a picture by removing one colour. Pure logic; it changes no window.
#pragma once

#include <optional>

#include "platform/pixel_picture.h"
#include "platform/window_region.h"

namespace sonarith {

/// The area of `bitmap` without the pixels of the colour `transparent`, as a list of rectangles.
/// If the same columns remain in adjacent rows, one set of rectangles covers these rows. For a
/// picture that consists of that colour only, the list is empty. If `bitmap` is null, returns
/// nullopt.
[[nodiscard]] std::optional<WindowRegion> RegionFromBitmap(const PixelPicture* bitmap,
                                                           PixelColour transparent);

} // namespace sonarith
