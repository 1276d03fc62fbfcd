// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/clock_random.h"

#include <gtest/gtest.h>

#include <set>

namespace sonarith {
namespace {

TEST(ClockRandom, ReturnsFractionsFromZeroToBelowOne) {
    ClockRandom random([] { return 7ULL; });
    double sum = 0;
    constexpr int draws = 100000;
    for (int i = 0; i < draws; ++i) {
        const float fraction = random.fraction();
        ASSERT_GE(fraction, 0.0F);
        ASSERT_LT(fraction, 1.0F);
        sum += fraction;
    }
    EXPECT_NEAR(sum / draws, 0.5, 0.01);
}

TEST(ClockRandom, ReseedingAtTheSameClockReadingRepeatsTheFraction) {
    std::uint64_t now = 1000;
    ClockRandom random([&] { return now; });
    const float first = random.fraction();
    random.reseedFromClock();
    EXPECT_EQ(random.fraction(), first);
    now = 1001;
    random.reseedFromClock();
    EXPECT_NE(random.fraction(), first);
}

TEST(ClockRandom, TheHighHalfOfTheClockReadingAlsoDeterminesTheFraction) {
    std::set<float> drawn;
    for (std::uint64_t high = 0; high < 100; ++high) {
        drawn.insert(ClockRandom([&] { return high << 32; }).fraction());
    }
    EXPECT_GT(drawn.size(), 95U);
}

} // namespace
} // namespace sonarith
