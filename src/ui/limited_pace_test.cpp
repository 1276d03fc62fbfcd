// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/limited_pace.h"

#include <functional>
#include <vector>

#include <QElapsedTimer>
#include <QTest>
#include <gtest/gtest.h>

namespace sonarith {
namespace {

using namespace std::chrono_literals;

struct LimitedPaceTest : testing::Test {
    int value = 0;
    std::vector<int> shown;
    const std::function<void()> show = [this] {
        shown.push_back(value);
    };
    LimitedPace pace{20ms, LimitedPace::First::atOnce, show};
    LimitedPace delayed{20ms, LimitedPace::First::delayed, show};

    void change() {
        ++value;
        pace.request();
    }
    void changeDelayed() {
        ++value;
        delayed.request();
    }
};

TEST_F(LimitedPaceTest, TheFirstRequestIsShownAtOnce) {
    change();
    EXPECT_EQ(shown, std::vector<int>({1}));
}

TEST_F(LimitedPaceTest, OfRequestsWithinAnIntervalOnlyTheLastValueIsShownAtTheEndOfTheInterval) {
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < 5; ++i) {
        change();
    }
    EXPECT_EQ(shown.size(), 1U);
    ASSERT_TRUE(QTest::qWaitFor([&] { return shown.size() > 1; }));
    EXPECT_GE(clock.elapsed(), 19)
        << "shown too early: Qt's timer may end the interval of 20 ms only 5 % early";
    EXPECT_EQ(shown, std::vector<int>({1, 5}));
}

TEST_F(LimitedPaceTest, AValueShownAtTheEndOfAnIntervalStartsTheNextInterval) {
    change();
    change();
    ASSERT_TRUE(QTest::qWaitFor([&] { return shown.size() == 2; }));
    change();
    EXPECT_EQ(shown.size(), 2U);
    ASSERT_TRUE(QTest::qWaitFor([&] { return shown.size() == 3; }));
    EXPECT_EQ(shown.back(), 3);
}

TEST_F(LimitedPaceTest, ADelayedFirstRequestIsShownTogetherWithTheNextRequest) {
    for (int round = 1; round <= 2; ++round) {
        changeDelayed();
        changeDelayed();
        EXPECT_EQ(shown.size(), static_cast<std::size_t>(round - 1));
        ASSERT_TRUE(
            QTest::qWaitFor([&] { return shown.size() == static_cast<std::size_t>(round); }));
        EXPECT_EQ(shown.back(), 2 * round);
    }
}

TEST_F(LimitedPaceTest, NothingIsShownWithoutARequest) {
    change();
    changeDelayed();
    ASSERT_TRUE(QTest::qWaitFor([&] { return shown.size() == 2; }));
    QTest::qWait(60);
    EXPECT_EQ(shown.size(), 2U);
}

} // namespace
} // namespace sonarith
