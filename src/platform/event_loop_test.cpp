// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/event_loop.h"

#include <gtest/gtest.h>

#include "support/virtual_event_loop.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using test::VirtualEventLoop;

struct WaitFor : testing::Test {
    VirtualEventLoop loop;
    const EventLoop::Time start = loop.now();
    EventLoop::Duration passed() const { return loop.now() - start; }
};

TEST_F(WaitFor, ReturnsExactlyOnTimeIfNothingElseHappens) {
    loop.waitFor(300ms);
    EXPECT_EQ(passed(), 300ms);
    EXPECT_EQ(loop.wakeupCount(), 0U);
}

TEST_F(WaitFor, RunsTimersUntilItReturns) {
    int ticks = 0;
    const auto wakeup = loop.every(100ms, [&] { ++ticks; });
    loop.waitFor(350ms);
    EXPECT_EQ(ticks, 3);
    EXPECT_EQ(passed(), 350ms);
}

TEST_F(WaitFor, IsNotEndedEarlyByOtherEvents) {
    for (const auto moment : {1ms, 150ms, 299ms}) {
        loop.after(moment, [] {});
    }
    loop.waitFor(300ms);
    EXPECT_EQ(passed(), 300ms);
}

TEST_F(WaitFor, AnOuterWaitReturnsNoEarlierThanTheInnerWait) {
    EventLoop::Duration inner{};
    loop.after(100ms, [&] {
        loop.waitFor(500ms);
        inner = passed();
    });
    loop.waitFor(300ms);
    EXPECT_EQ(inner, 600ms);
    // The outer wait's duration was over at 300 ms, but the outer wait cannot return before the
    // inner wait, which runs inside it.
    EXPECT_EQ(passed(), 600ms);
}

TEST_F(WaitFor, ReturnsAtOnceIfTheDurationIsNotPositive) {
    loop.waitFor(0ms);
    loop.waitFor(-5ms);
    EXPECT_EQ(passed(), 0ms);
    EXPECT_EQ(loop.yieldCount(), 0);
}

} // namespace
} // namespace sonarith
