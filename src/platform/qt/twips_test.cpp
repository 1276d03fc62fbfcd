// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/twips.h"

#include <gmock/gmock.h>

namespace sonarith {
namespace {

TEST(Twips, AClientAreaOf3990By5490TwipsHas266By366Pixels) {
    EXPECT_EQ(toPixels(Twips(3990)), 266);
    EXPECT_EQ(toPixels(Twips(5490)), 366);
    EXPECT_EQ(toTwips(266), 3990_twips);
}

TEST(Twips, PositiveAndNegativePixelsSurviveTheConversionToTwipsAndBack) {
    for (int pixels = -2000; pixels <= 2000; ++pixels) {
        ASSERT_EQ(toPixels(toTwips(pixels)), pixels);
    }
}

TEST(Twips, FractionsOfAPixelAreRoundedToTheNearestPixel) {
    EXPECT_EQ(toPixels(Twips(7)), 0);
    EXPECT_EQ(toPixels(Twips(8)), 1);
    EXPECT_EQ(toPixels(Twips(-7)), 0);
    EXPECT_EQ(toPixels(Twips(-8)), -1);
}

} // namespace
} // namespace sonarith
