// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/progress.h"

#include <gmock/gmock.h>

#include <limits>

namespace sonarith::mp3 {
namespace {

TEST(ProgressTest, ReturnsThePositionAsAPartOfAFixedLength) {
    Progress progress;
    EXPECT_EQ(progress.position(), 0);
    progress.setTotal(200);
    progress.add(50);
    EXPECT_EQ(progress.position(), Progress::length / 4);
    progress.add(150);
    EXPECT_EQ(progress.position(), Progress::length);
}

TEST(ProgressTest, DoesNotOverflowForTheLargestFile) {
    Progress progress;
    progress.setTotal(std::numeric_limits<std::int64_t>::max());
    progress.add(std::numeric_limits<std::int64_t>::max() / 2);
    EXPECT_NEAR(progress.position(), Progress::length / 2, 1);
}

TEST(ProgressTest, StaysWithinTheLengthIfMoreIsDoneThanTheTotal) {
    Progress progress;
    progress.setTotal(0);
    progress.add(1000);
    EXPECT_EQ(progress.position(), Progress::length);
}

TEST(ProgressTest, NeverDecreases) {
    Progress progress;
    progress.setTotal(100);
    progress.add(60);
    progress.raiseTo(40);
    EXPECT_EQ(progress.position(), Progress::length * 6 / 10);
    progress.raiseTo(80);
    EXPECT_EQ(progress.position(), Progress::length * 8 / 10);
}

} // namespace
} // namespace sonarith::mp3
