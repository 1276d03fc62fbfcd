// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/region_from_bitmap.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace sonarith {

namespace {

/// Columns from `start` up to, not including, `end`.
struct PixelRun {
    int start = 0;
    int end = 0;
    bool operator==(const PixelRun&) const = default;
};

/// The runs of the colour `transparent` in row `y`, from left to right. Also reads the column
/// `width`, which is outside the picture and has no colour, so every run ends at the picture's edge
/// at the latest.
std::vector<PixelRun> transparentRuns(const PixelPicture& bitmap, PixelColour transparent, int y) {
    std::vector<PixelRun> runs;
    // The column after a run is skipped: it is known to have another colour.
    for (int x = 0; x <= bitmap.width(); ++x) {
        while (x <= bitmap.width() && bitmap.pixel(x, y) != transparent) {
            ++x;
        }
        const int start = x;
        while (x <= bitmap.width() && bitmap.pixel(x, y) == transparent) {
            ++x;
        }
        if (x > start) {
            runs.push_back({start, x});
        }
    }
    return runs;
}

/// The runs of columns that remain when the runs `removed` are removed from a row of `width`
/// pixels.
std::vector<PixelRun> columnsLeft(const std::vector<PixelRun>& removed, int width) {
    std::vector<PixelRun> left;
    int start = 0;
    for (const PixelRun& run : removed) {
        if (run.start > start) {
            left.push_back({start, run.start});
        }
        start = run.end;
    }
    if (start < width) {
        left.push_back({start, width});
    }
    return left;
}

} // namespace

std::optional<WindowRegion> RegionFromBitmap(const PixelPicture* bitmap, PixelColour transparent) {
    if (bitmap == nullptr) {
        return std::nullopt;
    }
    WindowRegion region;
    std::vector<PixelRun> columnsAbove;
    std::size_t firstOfBand = 0;
    // Just as transparentRuns() reads the column `width`, this loop reads the row `height`. That
    // row is outside the picture, has no colour and adds no rectangle.
    for (int y = 0; y <= bitmap->height(); ++y) {
        const int width = y < bitmap->height() ? bitmap->width() : 0;
        const std::vector<PixelRun> columns =
            columnsLeft(transparentRuns(*bitmap, transparent, y), width);
        if (columns == columnsAbove) {
            std::for_each(region.rectangles.begin() + static_cast<std::ptrdiff_t>(firstOfBand),
                          region.rectangles.end(),
                          [y](PixelRectangle& rectangle) { rectangle.bottom = y + 1; });
            continue;
        }
        firstOfBand = region.rectangles.size();
        for (const PixelRun& run : columns) {
            region.rectangles.push_back({run.start, y, run.end, y + 1});
        }
        columnsAbove = columns;
    }
    return region;
}

} // namespace sonarith
