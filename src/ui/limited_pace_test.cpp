// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/limited_pace.h"

#include <functional>
#include <vector>

#include <QTest>
#include <gtest/gtest.h>

namespace sonarith {
namespace {

using namespace std::chrono_literals;

/// Records the values that are shown. The clock stands still unless a test advances it;
/// LimitedPace's own timer runs in real time.
struct LimitedPaceTest : testing::Test {
    int value = 0;
    std::vector<int> shown;
    std::chrono::nanoseconds now = 1000ms;
    LimitedPace pace{20ms, [this] { shown.push_back(value); },
                     [this] {
                         return now;
                     }};

    void change() {
        ++value;
        pace.request();
    }
};

TEST_F(LimitedPaceTest, TheFirstRequestIsShownAtOnce) {
    change();
    EXPECT_EQ(shown, std::vector<int>({1}));
}

TEST_F(LimitedPaceTest, InEachIntervalOnlyTheFirstRequestIsShown) {
    now = 1005ms;
    for (int i = 0; i < 11; ++i) { // the intervals begin at 1000, 1020 and 1040 ms
        change();
        now += 4ms;
    }
    EXPECT_EQ(shown, std::vector<int>({1, 5, 10}));
}

TEST_F(LimitedPaceTest, TheIntervalsOfTwoInstancesBeginAtTheSameTime) {
    std::vector<std::chrono::nanoseconds> other;
    LimitedPace second(
        20ms, [&] { other.push_back(now); }, [this] { return now; });
    now = 1001ms;
    change();
    now = 1013ms;
    second.request();
    now = 1020ms;
    change();
    second.request();
    EXPECT_EQ(shown, std::vector<int>({1, 2}));
    EXPECT_EQ(other, std::vector<std::chrono::nanoseconds>({1013ms, 1020ms}));
}

TEST_F(LimitedPaceTest, TheLastRequestIsShownAfterItsIntervalIfNoFurtherRequestFollows) {
    for (int i = 0; i < 5; ++i) {
        change();
    }
    EXPECT_EQ(shown, std::vector<int>({1}));
    now = 1050ms;
    ASSERT_TRUE(QTest::qWaitFor([&] { return shown.size() > 1; }));
    EXPECT_EQ(shown, std::vector<int>({1, 5}));
}

TEST_F(LimitedPaceTest, ARequestThatIsShownAtOnceCancelsThePendingDisplayOfAnEarlierRequest) {
    change();
    change();
    now = 1020ms;
    change();
    QTest::qWait(100);
    EXPECT_EQ(shown, std::vector<int>({1, 3}));
}

TEST_F(LimitedPaceTest, ASingleRequestIsShownOnlyOnce) {
    change();
    QTest::qWait(100);
    EXPECT_EQ(shown, std::vector<int>({1}));
}

} // namespace
} // namespace sonarith
