// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/read_effort.h"

#include <gmock/gmock.h>

namespace sonarith::disc {
namespace {

using namespace std::chrono_literals;

TEST(ReadEffort, Plans4SecondsOfRepairsThen4SecondsOfSingleAttemptsThenNoAttempt) {
    const ReadEffort effort;
    EXPECT_EQ(effort.plan(0s).effort, Effort::repair);
    EXPECT_EQ(effort.plan(0s).limit, 4s);
    EXPECT_EQ(effort.plan(3s).limit, 1s);
    EXPECT_EQ(effort.plan(4s).effort, Effort::once);
    EXPECT_EQ(effort.plan(7s).effort, Effort::once);
    EXPECT_EQ(effort.plan(7s).limit, 1s);
    EXPECT_EQ(effort.plan(8s).effort, Effort::none);
    EXPECT_EQ(effort.plan(1h).limit, 0s);
}

TEST(ReadEffort, HalvesAnExceededBudgetButNotBelowTheMinimum) {
    ReadEffort effort;
    effort.finish(9s);
    EXPECT_EQ(effort.plan(0s).limit, 2s);
    effort.finish(9s);
    EXPECT_EQ(effort.plan(0s).limit, 1s);
    for (int i = 0; i < 100; ++i) {
        effort.finish(9s);
    }
    EXPECT_EQ(effort.plan(0s).limit, ReadEffort::leastBudget);
}

TEST(ReadEffort, RestoresTheWholeBudgetAfterAReadThatStaysWithinItsBudget) {
    ReadEffort effort;
    effort.finish(9s);
    effort.finish(2s);
    EXPECT_EQ(effort.plan(0s).limit, ReadEffort::wholeBudget);
}

} // namespace
} // namespace sonarith::disc
