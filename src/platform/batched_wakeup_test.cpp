// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/batched_wakeup.h"

#include <functional>
#include <memory>
#include <vector>

#include <gmock/gmock.h>

#include "support/forwarding_event_loop.h"
#include "support/virtual_event_loop.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::ElementsAreArray;
using Times = std::vector<EventLoop::Duration>;

/// Records when the handler of a BatchedWakeup with an interval of 10 ms is called.
struct BatchedWakeupTest : testing::Test {
    test::VirtualEventLoop loop;
    const EventLoop::Time start = loop.now();
    bool silent = true;
    Times calls; ///< since the start
    std::function<void()> duringCall;
    std::unique_ptr<BatchedWakeup> wakeup;

    void begin() {
        wakeup = std::make_unique<BatchedWakeup>(
            loop, 10ms,
            [this] {
                calls.push_back(loop.now() - start);
                if (duringCall) {
                    duringCall();
                }
            },
            [this] { return silent; });
    }
    /// Starts the wake-up in silence and discards the first ten calls, which are not in batches.
    void beginInBatches() {
        begin();
        loop.advance(100ms);
        calls.clear();
    }
    void soundBegins() {
        silent = false;
        wakeup->endSilence();
    }
};

TEST_F(BatchedWakeupTest, EachCallIsInTimeWhileThereIsSound) {
    silent = false;
    begin();
    Times expected;
    for (int i = 1; i <= 100; ++i) {
        expected.push_back(i * 10ms);
    }
    loop.advance(1s);
    EXPECT_THAT(calls, ElementsAreArray(expected));
}

TEST_F(BatchedWakeupTest, TheFirstCallsInSilenceAreInTimeAndThenFiveComeAtOnce) {
    begin();
    loop.advance(199ms);
    EXPECT_THAT(calls, ElementsAre(10ms, 20ms, 30ms, 40ms, 50ms, 60ms, 70ms, 80ms, 90ms, 100ms,
                                   150ms, 150ms, 150ms, 150ms, 150ms));
}

TEST_F(BatchedWakeupTest, TheNumberOfCallsIsTheSameInSilence) {
    begin();
    loop.advance(10s);
    EXPECT_EQ(calls.size(), 1000U);
}

TEST_F(BatchedWakeupTest, WhenSoundBeginsBetweenBatchesTheDueCallsFollowAndThenEachIsInTime) {
    beginInBatches();
    loop.advance(50ms + 32ms);
    calls.clear();
    soundBegins();
    EXPECT_THAT(calls, ElementsAre()) << "endSilence() itself called the handler";
    loop.advance(31ms);
    EXPECT_THAT(calls, ElementsAre(183ms, 183ms, 183ms, 193ms, 203ms, 213ms));
}

TEST_F(BatchedWakeupTest, WhenSoundBeginsDirectlyAfterABatchTheNextCallIsOneIntervalLater) {
    beginInBatches();
    loop.advance(59ms);
    calls.clear();
    soundBegins();
    loop.advance(21ms);
    EXPECT_THAT(calls, ElementsAre(169ms, 179ms));
}

TEST_F(BatchedWakeupTest, CallsThatBecomeDueWithinTheHandlerAreDropped) {
    beginInBatches();
    duringCall = [&] {
        duringCall = nullptr;
        loop.waitFor(200ms);
    };
    loop.advance(250ms);
    calls.clear();
    soundBegins();
    loop.advance(10ms);
    EXPECT_EQ(calls.size(), 1U);
}

/// A loop whose thread was busy: the time has passed, and no wake-up has been served yet.
class LateLoop final : public test::ForwardingEventLoop {
  public:
    using ForwardingEventLoop::ForwardingEventLoop;
    [[nodiscard]] Time now() const override { return ForwardingEventLoop::now() + late; }
    Duration late{};
};

TEST_F(BatchedWakeupTest, SoundAfterABusyTimeBringsLessThanABatch) {
    LateLoop busy(loop);
    int count = 0;
    BatchedWakeup batches(
        busy, 10ms, [&] { ++count; }, [this] { return silent; });
    loop.advance(100ms);
    busy.late = 1s;
    count = 0;
    silent = false;
    batches.endSilence();
    loop.advance(1ms);
    EXPECT_EQ(count, BatchedWakeup::callsInBatch - 1);
}

TEST_F(BatchedWakeupTest, ShortSilenceIsNotServedInBatches) {
    silent = false;
    begin();
    loop.advance(50ms);
    silent = true;
    loop.advance(90ms);
    silent = false;
    loop.advance(10ms);
    silent = true;
    loop.advance(90ms);
    calls.clear();
    loop.advance(10ms);
    EXPECT_THAT(calls, ElementsAre(250ms));
    loop.advance(49ms);
    EXPECT_THAT(calls, ElementsAre(250ms))
        << "a call was made before the next batch, which is due at 300 ms";
}

TEST_F(BatchedWakeupTest, EndSilenceDuringSilenceChangesNothing) {
    beginInBatches();
    for (int i = 0; i < 5; ++i) {
        loop.advance(10ms);
        wakeup->endSilence();
    }
    EXPECT_THAT(calls, ElementsAre(150ms, 150ms, 150ms, 150ms, 150ms));
}

TEST_F(BatchedWakeupTest, EndSilenceWhileThereIsSoundDelaysNoCall) {
    silent = false;
    begin();
    for (int i = 0; i < 5; ++i) {
        loop.advance(6ms);
        wakeup->endSilence();
    }
    EXPECT_THAT(calls, ElementsAre(10ms, 20ms, 30ms));
}

TEST_F(BatchedWakeupTest, SoundThatNobodyReportedIsNoticedAfterTheBatch) {
    beginInBatches();
    silent = false;
    loop.advance(69ms);
    EXPECT_THAT(calls, ElementsAre(150ms, 150ms, 150ms, 150ms, 150ms, 160ms));
}

TEST_F(BatchedWakeupTest, AHandlerThatWaitsIsNotReentered) {
    beginInBatches();
    int depth = 0;
    int deepest = 0;
    duringCall = [&] {
        deepest = std::max(deepest, ++depth);
        // Sound begins while the handler runs, as if the user had clicked a button.
        soundBegins();
        loop.waitFor(30ms);
        --depth;
    };
    loop.advance(500ms);
    EXPECT_EQ(deepest, 1);
    EXPECT_GT(calls.size(), 5U);
}

TEST_F(BatchedWakeupTest, AHandlerMayDestroyTheWakeupWithinABatch) {
    beginInBatches();
    duringCall = [&] {
        if (calls.size() == 3) {
            wakeup.reset();
        }
    };
    loop.advance(1s);
    EXPECT_THAT(calls, ElementsAre(150ms, 150ms, 150ms));
    EXPECT_EQ(loop.wakeupCount(), 0U);
}

} // namespace
} // namespace sonarith
