// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/waiting/blocking_calls.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "support/gate.h"
#include "support/waiting.h"

namespace sonarith::waiting {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using CommandState = BlockingCalls::CommandState;

class BlockingCallsTest : public testing::Test {
  protected:
    /// A call that waits at the gate and then adds `name` to done().
    BlockingCalls::Call noting(const std::string& name) {
        return [state = state, name] {
            state->gate.pass();
            const std::lock_guard lock(state->mutex);
            state->done.push_back(name);
        };
    }
    std::vector<std::string> done() {
        const std::lock_guard lock(state->mutex);
        return state->done;
    }

    struct State {
        fakes::Gate gate;
        std::mutex mutex;
        std::vector<std::string> done;
    };
    std::shared_ptr<State> state = std::make_shared<State>();
    WorkerThreads threads;
    PlainWaiting waiting;
    BlockingCalls calls{threads, waiting};
};

TEST_F(BlockingCallsTest, ReturnTheResultOfTheQuestion) {
    for (int question = 0; question < 500; ++question) {
        ASSERT_EQ(calls.ask(1h, [question] { return question; }), question);
        ASSERT_TRUE(calls.idle());
    }
}

TEST_F(BlockingCallsTest, RefuseQuestionsWhileAnEarlierCallHangs) {
    state->gate.close();
    EXPECT_EQ(calls.ask(1ms, [state = state] { return state->gate.pass(), 1; }), std::nullopt);
    EXPECT_FALSE(calls.idle());
    EXPECT_EQ(calls.ask(1h, [] { return 2; }), std::nullopt);
    state->gate.open();
    EXPECT_TRUE(fakes::eventually([&] { return calls.idle(); }));
    EXPECT_EQ(calls.ask(1h, [] { return 3; }), 3);
    EXPECT_EQ(state->gate.arrivals(), 1);
}

TEST_F(BlockingCallsTest, AreNotDelayedByAHangingCallOfAnotherBlockingCallsObject) {
    state->gate.close();
    EXPECT_EQ(calls.send(0ms, noting("hangs")), CommandState::waits);
    BlockingCalls others(threads, waiting);
    EXPECT_EQ(others.ask(1h, [] { return 1; }), 1);
    state->gate.open();
    EXPECT_TRUE(calls.finish(1h));
}

TEST_F(BlockingCallsTest, RunQueuedCommandsInOrderAfterAHang) {
    state->gate.close();
    EXPECT_EQ(calls.send(1ms, noting("first")), CommandState::waits);
    EXPECT_EQ(calls.send(1ms, noting("second")), CommandState::waits);
    EXPECT_THAT(done(), ElementsAre());
    state->gate.open();
    EXPECT_EQ(calls.send(1h, noting("third")), CommandState::done);
    EXPECT_THAT(done(), ElementsAre("first", "second", "third"));
}

TEST_F(BlockingCallsTest, RefuseCommandsBeyondTheQueueLimit) {
    state->gate.close();
    EXPECT_EQ(calls.send(0ms, noting("hangs")), CommandState::waits);
    state->gate.waitForArrivals(1);
    for (std::size_t i = 0; i < BlockingCalls::mostWaiting; ++i) {
        EXPECT_EQ(calls.send(0ms, noting("waits")), CommandState::waits);
    }
    EXPECT_EQ(calls.send(1h, noting("one too many")), CommandState::refused)
        << "a command beyond the queue limit must be refused without a wait";
    state->gate.open();
    EXPECT_TRUE(calls.finish(1h));
    EXPECT_THAT(done(), ElementsAre("hangs", "waits", "waits", "waits", "waits"));
}

TEST_F(BlockingCallsTest, DropQueuedCallsWhenDestroyedDuringAHang) {
    state->gate.close();
    {
        BlockingCalls left(threads, waiting);
        EXPECT_EQ(left.send(0ms, noting("hangs")), CommandState::waits);
        state->gate.waitForArrivals(1);
        EXPECT_EQ(left.send(0ms, noting("waits")), CommandState::waits);
    }
    state->gate.open();
    EXPECT_TRUE(fakes::eventually([&] { return state.use_count() == 1; }));
    EXPECT_THAT(done(), ElementsAre("hangs"));
}

/// Simulates a user who closes a window during each wait: the wait ends at once.
class EndingWait final : public Waiting {
  public:
    Outcome wait(const Completion&, Duration) override { return Outcome::ended; }
};

TEST_F(BlockingCallsTest, ReturnNoResultIfTheWaitIsEnded) {
    EndingWait ending;
    BlockingCalls ended(threads, ending);
    state->gate.close();
    EXPECT_EQ(ended.ask(1h, [state = state] { return state->gate.pass(), 1; }), std::nullopt);
    state->gate.open();
    EXPECT_TRUE(fakes::eventually([&] { return ended.idle(); }));
}

} // namespace
} // namespace sonarith::waiting
