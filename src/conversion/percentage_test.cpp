// SPDX-License-Identifier: GPL-3.0-or-later
#include "conversion/percentage.h"

#include <gmock/gmock.h>

namespace sonarith {
namespace {

TEST(PercentageOf, RoundsHalvesToTheEvenNumber) {
    // Eighths are exact: 12.5, 37.5, 62.5, 87.5.
    EXPECT_EQ(percentageOf(1, 8).value(), 12);
    EXPECT_EQ(percentageOf(3, 8).value(), 38);
    EXPECT_EQ(percentageOf(5, 8).value(), 62);
    EXPECT_EQ(percentageOf(7, 8).value(), 88);
    EXPECT_EQ(percentageOf(1, 3).value(), 33);
    EXPECT_EQ(percentageOf(2, 3).value(), 67);
}

TEST(PercentageOf, IsNotHeldWithinAHundred) {
    EXPECT_EQ(percentageOf(0, 5).value(), 0);
    EXPECT_EQ(percentageOf(5, 5).value(), 100);
    EXPECT_EQ(percentageOf(6, 5).value(), 120);
    EXPECT_EQ(percentageOf(-1, 5).value(), -20);
    EXPECT_EQ(percentageOf(INT32_MAX, INT32_MAX).value(), 100);
}

TEST(PercentageOf, FailsForALengthOfZero) {
    for (const std::int32_t position : {0, 1, -1}) {
        const auto percentage = percentageOf(position, 0);
        ASSERT_FALSE(percentage.ok());
        EXPECT_EQ(percentage.error().number, ErrorNumber::divisionByZero);
    }
}

TEST(PercentageOf, FailsBeyondSixteenBits) {
    EXPECT_EQ(percentageOf(32767, 100).value(), 32767);
    EXPECT_EQ(percentageOf(-32768, 100).value(), -32768);
    for (const std::int32_t position : {32768, -32769, INT32_MAX, INT32_MIN}) {
        const auto percentage = percentageOf(position, 100);
        ASSERT_FALSE(percentage.ok()) << position;
        EXPECT_EQ(percentage.error().number, ErrorNumber::overflow);
    }
}

} // namespace
} // namespace sonarith
