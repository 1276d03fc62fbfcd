// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/controls/timer.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "support/forwarding_event_loop.h"
#include "support/virtual_event_loop.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using test::VirtualEventLoop;

struct TimerTest : testing::Test {
    VirtualEventLoop loop;
    Form form{"Form1"};
    Timer timer{form, loop, "tmrRecord", 100ms};
    int ticks = 0;

    TimerTest() {
        timer.onTimer = [this] {
            ++ticks;
        };
    }
};

TEST_F(TimerTest, IsOffUntilItIsEnabled) {
    EXPECT_EQ(timer.name(), "tmrRecord");
    EXPECT_EQ(timer.interval(), 100ms);
    EXPECT_FALSE(timer.enabled());
    loop.advance(1s);
    EXPECT_EQ(ticks, 0);
}

TEST_F(TimerTest, TicksAtEveryIntervalWhileItIsOn) {
    timer.setEnabled(true);
    EXPECT_TRUE(timer.enabled());
    loop.advance(99ms);
    EXPECT_EQ(ticks, 0);
    loop.advance(1ms);
    EXPECT_EQ(ticks, 1);
    loop.advance(900ms);
    EXPECT_EQ(ticks, 10);
    timer.setEnabled(false);
    loop.advance(1s);
    EXPECT_EQ(ticks, 10);
}

TEST_F(TimerTest, EnablingAnEnabledTimerDoesNotRestartItsInterval) {
    timer.setEnabled(true);
    loop.advance(90ms);
    timer.setEnabled(true);
    loop.advance(10ms);
    EXPECT_EQ(ticks, 1);
}

TEST_F(TimerTest, DisablingAndEnablingStartsAFullInterval) {
    timer.setEnabled(true);
    loop.advance(90ms);
    timer.setEnabled(false);
    timer.setEnabled(true);
    loop.advance(99ms);
    EXPECT_EQ(ticks, 0);
    loop.advance(1ms);
    EXPECT_EQ(ticks, 1);
}

TEST_F(TimerTest, CanBeDisabledInItsOwnTick) {
    timer.onTimer = [this] {
        ++ticks;
        timer.setEnabled(false);
    };
    timer.setEnabled(true);
    loop.advance(1s);
    EXPECT_EQ(ticks, 1);
    EXPECT_FALSE(timer.enabled());
}

TEST_F(TimerTest, CanBeRestartedInItsOwnTick) {
    timer.onTimer = [this] {
        ++ticks;
        timer.setEnabled(false);
        timer.setEnabled(true);
    };
    timer.setEnabled(true);
    loop.advance(1s);
    EXPECT_EQ(ticks, 10);
    EXPECT_TRUE(timer.enabled());
}

TEST_F(TimerTest, DropsTheTicksThatBecomeDueDuringATick) {
    int depth = 0;
    timer.onTimer = [&] {
        EXPECT_EQ(++depth, 1);
        ++ticks;
        loop.waitFor(350ms);
        --depth;
    };
    timer.setEnabled(true);
    loop.advance(460ms);
    EXPECT_EQ(ticks, 1);
}

TEST_F(TimerTest, FiresDuringATickThatHasRestartedTheTimer) {
    timer.onTimer = [&] {
        if (++ticks == 1) {
            timer.setEnabled(false);
            timer.setEnabled(true);
            loop.waitFor(250ms);
            EXPECT_EQ(ticks, 3);
        }
    };
    timer.setEnabled(true);
    loop.advance(350ms);
    EXPECT_EQ(ticks, 3);
}

/// Doubles the interval of everyInSound(), so that a test can distinguish it from every().
class SlowEveryInSound final : public test::ForwardingEventLoop {
  public:
    using ForwardingEventLoop::ForwardingEventLoop;
    [[nodiscard]] std::unique_ptr<Wakeup> everyInSound(Duration interval,
                                                       std::function<void()> handler) override {
        return every(2 * interval, std::move(handler));
    }
};

TEST_F(TimerTest, UsesEveryInSoundOnlyIfItIsCreatedWithInSound) {
    SlowEveryInSound slow(loop);
    Timer always(form, slow, "Timer6", 100ms);
    Timer inSound(form, slow, "Timer3", 100ms, TimerAtLoad::off, TicksInTime::inSound);
    always.onTimer = inSound.onTimer = [this] {
        ++ticks;
    };
    always.setEnabled(true);
    loop.advance(1s);
    EXPECT_EQ(ticks, 10);
    always.setEnabled(false);
    inSound.setEnabled(true);
    loop.advance(1s);
    EXPECT_EQ(ticks, 15);
    inSound.setEnabled(false);
    loop.advance(1s);
    EXPECT_EQ(ticks, 15);
}

TEST_F(TimerTest, FireRunsATickOfADisabledTimer) {
    timer.fire();
    EXPECT_EQ(ticks, 1);
    EXPECT_FALSE(timer.enabled());
}

TEST_F(TimerTest, CanFireAgainAfterATickThatThrewAnException) {
    timer.onTimer = [this] {
        ++ticks;
        throw std::runtime_error("from the tick");
    };
    timer.setEnabled(true);
    EXPECT_THROW(loop.advance(100ms), std::runtime_error);
    EXPECT_THROW(loop.advance(100ms), std::runtime_error);
    EXPECT_EQ(ticks, 2);
}

} // namespace
} // namespace sonarith
