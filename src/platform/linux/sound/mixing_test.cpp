// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/mixing.h"

#include <gtest/gtest.h>

namespace sonarith::sound {
namespace {

TEST(Mixing, FullVolumeChangesNoSample) {
    for (int value = INT16_MIN; value <= INT16_MAX; ++value) {
        ASSERT_EQ(atLevel(value, fullVolume), value);
    }
}

TEST(Mixing, VolumeZeroIsSilence) {
    EXPECT_EQ(atLevel(INT16_MIN, 0), 0);
    EXPECT_EQ(atLevel(INT16_MAX, 0), 0);
}

TEST(Mixing, TheVolumeScalesSamplesLinearlyAndTheProductIsRounded) {
    constexpr int third = fullVolume / 3; // 65535 is three times 21845
    EXPECT_EQ(atLevel(3000, third), 1000);
    EXPECT_EQ(atLevel(-3000, third), -1000);
    EXPECT_EQ(atLevel(2, third), 1); // 0.67
    EXPECT_EQ(atLevel(1, third), 0); // 0.33
    EXPECT_EQ(atLevel(-2, third), -1);
}

TEST(Mixing, ThreeLinesAtFullVolumeDoNotOverflow) {
    EXPECT_EQ(atLevel(3 * INT16_MIN, fullVolume), 3 * INT16_MIN);
    EXPECT_EQ(saturated(3 * INT16_MIN), INT16_MIN);
    EXPECT_EQ(saturated(3 * INT16_MAX), INT16_MAX);
    EXPECT_EQ(saturated(-5), -5);
}

TEST(Mixing, MonoIsTheMeanOfBothChannelsEvenAtTheExtremes) {
    EXPECT_EQ(meanOf({INT16_MAX, INT16_MAX}), INT16_MAX);
    EXPECT_EQ(meanOf({INT16_MIN, INT16_MIN}), INT16_MIN);
    EXPECT_EQ(meanOf({INT16_MIN, INT16_MAX}), 0);
    EXPECT_EQ(meanOf({100, 200}), 150);
    EXPECT_EQ(meanOf({1, 2}), 1);
    EXPECT_EQ(meanOf({-1, -2}), -1);
}

} // namespace
} // namespace sonarith::sound
