// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/region_from_bitmap.h"

#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr PixelColour black = 0x000000;

/// `rows` has one text for each row: a blank is a white pixel, every other character a black pixel.
std::vector<PixelColour> pixelsOf(const std::vector<std::string>& rows) {
    std::vector<PixelColour> pixels;
    for (const std::string& row : rows) {
        for (const char c : row) {
            pixels.push_back(c == ' ' ? whitePixel : black);
        }
    }
    return pixels;
}

int widthOf(const std::vector<std::string>& rows) {
    return rows.empty() ? 0 : static_cast<int>(rows.front().size());
}

/// Logs which pixels are read.
class WatchedPicture final : public PixelPicture {
  public:
    explicit WatchedPicture(const std::vector<std::string>& rows)
        : PixelPicture(widthOf(rows), static_cast<int>(rows.size()), pixelsOf(rows)) {}

    mutable std::vector<std::pair<int, int>> asked;

    [[nodiscard]] std::optional<PixelColour> pixel(int x, int y) const override {
        asked.emplace_back(x, y);
        return PixelPicture::pixel(x, y);
    }
};

std::vector<PixelRectangle> rectanglesOf(const std::vector<std::string>& rows,
                                         PixelColour transparent = whitePixel) {
    const WatchedPicture picture(rows);
    const auto region = RegionFromBitmap(&picture, transparent);
    EXPECT_TRUE(region.has_value());
    return region ? region->rectangles : std::vector<PixelRectangle>();
}

TEST(RegionFromBitmap, IsNulloptWithoutAPicture) {
    EXPECT_EQ(RegionFromBitmap(nullptr, whitePixel), std::nullopt);
}

TEST(RegionFromBitmap, IsTheWholeRectangleForAPictureWithoutTheTransparentColour) {
    EXPECT_THAT(rectanglesOf({"xxx", "xxx"}), ElementsAre(PixelRectangle{0, 0, 3, 2}));
}

TEST(RegionFromBitmap, HasNoRectanglesForAPictureInTheTransparentColourOnly) {
    const WatchedPicture picture({"   ", "   "});
    const auto region = RegionFromBitmap(&picture, whitePixel);
    ASSERT_TRUE(region.has_value());
    EXPECT_THAT(region->rectangles, IsEmpty());
}

TEST(RegionFromBitmap, HasNoRectanglesForAPictureWithoutPixels) {
    EXPECT_THAT(rectanglesOf({}), IsEmpty());
    EXPECT_THAT(rectanglesOf({"", ""}), IsEmpty());
}

TEST(RegionFromBitmap, RemovesTransparentPixelsAtBothEdgesAndInTheMiddleOfARow) {
    EXPECT_THAT(rectanglesOf({" x  x "}),
                ElementsAre(PixelRectangle{1, 0, 2, 1}, PixelRectangle{4, 0, 5, 1}));
    EXPECT_THAT(rectanglesOf({"x  x"}),
                ElementsAre(PixelRectangle{0, 0, 1, 1}, PixelRectangle{3, 0, 4, 1}));
}

TEST(RegionFromBitmap, RemovesEachTransparentPixelIfEverySecondPixelIsTransparent) {
    EXPECT_THAT(rectanglesOf({"x x x"}),
                ElementsAre(PixelRectangle{0, 0, 1, 1}, PixelRectangle{2, 0, 3, 1},
                            PixelRectangle{4, 0, 5, 1}));
    EXPECT_THAT(rectanglesOf({" x x "}),
                ElementsAre(PixelRectangle{1, 0, 2, 1}, PixelRectangle{3, 0, 4, 1}));
}

TEST(RegionFromBitmap, EqualAdjacentRowsShareTheirRectangles) {
    EXPECT_THAT(rectanglesOf({"xx", "x ", "x ", "  ", "x "}),
                ElementsAre(PixelRectangle{0, 0, 2, 1}, PixelRectangle{0, 1, 1, 3},
                            PixelRectangle{0, 4, 1, 5}));
}

TEST(RegionFromBitmap, RemovesOnlyTheGivenColour) {
    EXPECT_THAT(rectanglesOf({"x x"}, black), ElementsAre(PixelRectangle{1, 0, 2, 1}));
    EXPECT_THAT(rectanglesOf({"x x"}, 0xFEFFFF), ElementsAre(PixelRectangle{0, 0, 3, 1}));
    // No pixel has the colour 0xFFFFFFFF, and positions outside the picture have no colour at all,
    // so nothing is removed.
    EXPECT_THAT(rectanglesOf({"x x"}, 0xFFFFFFFF), ElementsAre(PixelRectangle{0, 0, 3, 1}));
}

// --- which pixels are read ----------------------------------------------------

TEST(RegionFromBitmap, ReadsOneColumnAndOneRowPastThePicture) {
    const WatchedPicture picture({"x"});
    static_cast<void>(RegionFromBitmap(&picture, whitePixel));
    EXPECT_THAT(picture.asked, ElementsAre(std::pair(0, 0), std::pair(1, 0), //
                                           std::pair(0, 1), std::pair(1, 1)));
}

TEST(RegionFromBitmap, ReadsOnePixelPastAPictureWithoutPixels) {
    const WatchedPicture picture({});
    static_cast<void>(RegionFromBitmap(&picture, whitePixel));
    EXPECT_THAT(picture.asked, ElementsAre(std::pair(0, 0)));
}

TEST(RegionFromBitmap, ReadsThePixelAfterARunOfTransparentPixelsOnlyOnce) {
    const WatchedPicture picture({" x "});
    const auto region = RegionFromBitmap(&picture, whitePixel);
    EXPECT_THAT(region->rectangles, ElementsAre(PixelRectangle{1, 0, 2, 1}));
    const std::vector<std::pair<int, int>> firstRow(picture.asked.begin(),
                                                    picture.asked.begin() + 6);
    // The first pixel of each run of transparent pixels is read twice, the pixel after the run
    // once.
    EXPECT_THAT(firstRow, ElementsAre(std::pair(0, 0), std::pair(0, 0), std::pair(1, 0), //
                                      std::pair(2, 0), std::pair(2, 0), std::pair(3, 0)));
}

// --- any picture ---------------------------------------------------------------------------

TEST(RegionFromBitmap, CoversEveryPixelThatIsNotTransparentExactlyOnce) {
    std::mt19937 random(20260);
    for (int round = 0; round < 200; ++round) {
        const int width = static_cast<int>(random() % 12);
        const int height = static_cast<int>(random() % 12);
        std::vector<std::string> rows;
        for (int y = 0; y < height; ++y) {
            std::string row;
            for (int x = 0; x < width; ++x) {
                row += random() % 2 != 0 ? 'x' : ' ';
            }
            // Some rows equal the row above.
            rows.push_back(!rows.empty() && random() % 3 == 0 ? rows.back() : row);
        }
        std::vector<std::vector<int>> covered(static_cast<std::size_t>(height),
                                              std::vector<int>(static_cast<std::size_t>(width)));
        for (const PixelRectangle& rectangle : rectanglesOf(rows)) {
            ASSERT_TRUE(rectangle.left >= 0 && rectangle.left < rectangle.right &&
                        rectangle.right <= width);
            ASSERT_TRUE(rectangle.top >= 0 && rectangle.top < rectangle.bottom &&
                        rectangle.bottom <= height);
            for (int y = rectangle.top; y < rectangle.bottom; ++y) {
                for (int x = rectangle.left; x < rectangle.right; ++x) {
                    ++covered[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
                }
            }
        }
        for (std::size_t y = 0; y < rows.size(); ++y) {
            for (std::size_t x = 0; x < rows[y].size(); ++x) {
                ASSERT_EQ(covered[y][x], rows[y][x] == ' ' ? 0 : 1) << x << ", " << y;
            }
        }
    }
}

} // namespace
} // namespace sonarith
