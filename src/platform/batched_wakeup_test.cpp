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
    Times calls; ///< the time of each call, measured from `start`
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
    /// Starts the wake-up in silence and discards the first ten calls, which are in pairs.
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

TEST_F(BatchedWakeupTest, WhileThereIsSoundTheCallsAreMadeInPairs) {
    silent = false;
    begin();
    Times expected;
    for (int i = 1; i <= 50; ++i) {
        expected.push_back(i * 20ms);
        expected.push_back(i * 20ms);
    }
    loop.advance(1s);
    EXPECT_THAT(calls, ElementsAreArray(expected));
}

TEST_F(BatchedWakeupTest, InSilenceTheFirstTenCallsAreMadeInPairsAndLaterCallsInBatchesOfFive) {
    begin();
    loop.advance(199ms);
    EXPECT_THAT(calls, ElementsAre(20ms, 20ms, 40ms, 40ms, 60ms, 60ms, 80ms, 80ms, 100ms, 100ms,
                                   150ms, 150ms, 150ms, 150ms, 150ms));
}

TEST_F(BatchedWakeupTest, InSilenceTheHandlerIsStillCalledOncePerIntervalOnAverage) {
    begin();
    loop.advance(10s);
    EXPECT_EQ(calls.size(), 1000U);
}

TEST_F(BatchedWakeupTest, AtTheBeginningOfSoundTheDueCallsAreMadeTogether) {
    beginInBatches();
    loop.advance(50ms + 32ms);
    calls.clear();
    soundBegins();
    EXPECT_THAT(calls, ElementsAre()) << "endSilence() itself must not call the handler";
    loop.advance(31ms);
    EXPECT_THAT(calls, ElementsAre(183ms, 183ms, 183ms, 203ms, 203ms));
}

TEST_F(BatchedWakeupTest, WhenNoCallIsDueTheNextCallIsOneIntervalAfterSoundBegins) {
    beginInBatches();
    loop.advance(59ms);
    calls.clear();
    soundBegins();
    loop.advance(31ms);
    EXPECT_THAT(calls, ElementsAre(169ms, 189ms, 189ms));
}

TEST_F(BatchedWakeupTest, CallsThatBecomeDueWhileTheHandlerRunsAreDropped) {
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

/// A loop whose thread was busy for `late`: the clock has advanced, but no wake-up has run yet.
class LateLoop final : public test::ForwardingEventLoop {
  public:
    using ForwardingEventLoop::ForwardingEventLoop;
    [[nodiscard]] Time now() const override { return ForwardingEventLoop::now() + late; }
    Duration late{};
};

TEST_F(BatchedWakeupTest, ALateThreadMakesOnlyFourOfTheDueCallsWhenSoundBegins) {
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
    EXPECT_EQ(count, BatchedWakeup::callsInSilence - 1);
}

TEST_F(BatchedWakeupTest, TheBatchesGrowOnlyAfterTenConsecutiveSilentCalls) {
    silent = false;
    begin();
    loop.advance(50ms);
    silent = true;
    loop.advance(80ms);
    silent = false;
    loop.advance(20ms);
    silent = true;
    loop.advance(80ms);
    calls.clear();
    loop.advance(10ms);
    EXPECT_THAT(calls, ElementsAre(240ms, 240ms));
    loop.advance(49ms);
    EXPECT_THAT(calls, ElementsAre(240ms, 240ms))
        << "no call must be made before the next batch, which is due at 290 ms";
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
    EXPECT_THAT(calls, ElementsAre(20ms, 20ms));
}

TEST_F(BatchedWakeupTest, SoundWithoutACallOfEndSilenceIsDetectedAfterTheNextBatch) {
    beginInBatches();
    silent = false;
    loop.advance(70ms);
    EXPECT_THAT(calls, ElementsAre(150ms, 150ms, 150ms, 150ms, 150ms, 170ms, 170ms));
}

TEST_F(BatchedWakeupTest, AHandlerThatWaitsIsNotReentered) {
    beginInBatches();
    int depth = 0;
    int deepest = 0;
    duringCall = [&] {
        deepest = std::max(deepest, ++depth);
        // endSilence() must not start a wake-up here: it would call the handler a second time.
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
