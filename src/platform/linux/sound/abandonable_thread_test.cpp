// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/abandonable_thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>

#include "support/limited_threads.h"
#include "support/waiting.h"

namespace sonarith::sound {
namespace {

using namespace std::chrono_literals;

TEST(AbandonableThread, WaitsForABodyThatReturns) {
    const auto owned = std::make_shared<std::atomic<bool>>(false);
    {
        AbandonableThread thread;
        ASSERT_TRUE(thread.start([owned] { *owned = true; }).ok());
        thread.leave(1h);
    }
    EXPECT_TRUE(*owned);
    EXPECT_EQ(owned.use_count(), 1) << "the body must be destroyed before leave() returns";
}

TEST(AbandonableThread, WaitsForAHangingBodyOnlyForALimitedTime) {
    std::promise<void> release;
    const auto finished = std::make_shared<std::atomic<bool>>(false);
    {
        AbandonableThread thread;
        const auto body = [finished, gate = release.get_future().share()] {
            gate.wait();
            *finished = true;
        };
        ASSERT_TRUE(thread.start(body).ok());
        thread.leave(1ms);
    }
    EXPECT_FALSE(*finished);
    release.set_value();
    EXPECT_TRUE(fakes::eventually([&] { return finished->load() && finished.use_count() == 1; }));
}

TEST(AbandonableThread, CanBeStartedAfterAFailedStart) {
    fakes::LimitedThreads threads(0);
    const auto owned = std::make_shared<std::atomic<bool>>(false);
    AbandonableThread thread;
    const Status refused = thread.start([owned] { *owned = true; }, threads.starter());
    ASSERT_FALSE(refused.ok());
    EXPECT_EQ(refused.error().number, ErrorNumber::deviceUnavailable);
    EXPECT_FALSE(thread.started());
    EXPECT_EQ(owned.use_count(), 1);
    threads.free(1);
    ASSERT_TRUE(thread.start([owned] { *owned = true; }, threads.starter()).ok());
    EXPECT_TRUE(thread.started());
    thread.leave(1h);
    EXPECT_TRUE(*owned);
}

} // namespace
} // namespace sonarith::sound
