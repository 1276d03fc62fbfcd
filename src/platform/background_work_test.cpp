// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/background_work.h"

#include <optional>
#include <thread>

#include <gmock/gmock.h>

#include "support/limited_threads.h"

namespace sonarith {
namespace {

TEST(BackgroundWork, RunsOnAnotherThreadAndIsCompleteWhenItsDestructorReturns) {
    std::optional<std::thread::id> worker;
    {
        const BackgroundWork work([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            worker = std::this_thread::get_id();
        });
    }
    ASSERT_TRUE(worker.has_value());
    EXPECT_NE(*worker, std::this_thread::get_id());
}

TEST(BackgroundWork, IsNotDoneIfNoThreadCanBeCreated) {
    const fakes::LimitedThreads threads(0);
    bool done = false;
    {
        const BackgroundWork work([&] { done = true; }, threads.starter());
    }
    EXPECT_EQ(threads.refused(), 1);
    EXPECT_FALSE(done);
}

} // namespace
} // namespace sonarith
