// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/waiting.h"

#include <thread>

#include <gtest/gtest.h>

namespace sonarith {
namespace {

using namespace std::chrono_literals;

TEST(Completion, IsCompleteAfterAnotherThreadHasCompletedIt) {
    Completion completion;
    EXPECT_FALSE(completion.isComplete());
    EXPECT_FALSE(completion.restFor(0ms));
    std::thread other([&] { completion.complete(); });
    EXPECT_TRUE(completion.restFor(1h));
    EXPECT_TRUE(completion.isComplete());
    other.join();
}

TEST(Completion, WakesAThreadThatSleeps) {
    Completion completion;
    std::thread other([&] {
        // After this time, the thread of the test sleeps in restFor().
        std::this_thread::sleep_for(20ms);
        completion.complete();
    });
    EXPECT_TRUE(completion.restFor(1h));
    other.join();
}

TEST(PlainWaiting, ReportsATimeoutAsLateAndACompletionAsDone) {
    PlainWaiting waiting;
    Completion completion;
    EXPECT_EQ(waiting.wait(completion, 1ms), Waiting::Outcome::late);
    completion.complete();
    EXPECT_EQ(waiting.wait(completion, 0ms), Waiting::Outcome::done);
}

} // namespace
} // namespace sonarith
