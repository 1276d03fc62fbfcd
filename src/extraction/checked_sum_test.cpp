// SPDX-License-Identifier: GPL-3.0-or-later
#include "extraction/checked_sum.h"

#include <gtest/gtest.h>

namespace sonarith {
namespace {

TEST(CheckedSum, ReturnsASumInTheRangeOf32Bits) {
    EXPECT_EQ(checkedSum(2, 3).value(), 5);
    EXPECT_EQ(checkedSum(INT32_MAX, 0).value(), INT32_MAX);
    EXPECT_EQ(checkedSum(INT32_MIN, INT32_MAX).value(), -1);
}

TEST(CheckedSum, FailsOutsideTheRangeOf32Bits) {
    ASSERT_FALSE(checkedSum(INT32_MAX, 1).ok());
    EXPECT_EQ(checkedSum(INT32_MAX, 1).error().number, ErrorNumber::overflow);
    EXPECT_FALSE(checkedSum(INT32_MIN, -1).ok());
}

} // namespace
} // namespace sonarith
