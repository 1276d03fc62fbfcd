// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/abandonable_thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>

#include "support/waiting.h"

namespace sonarith::sound {
namespace {

using namespace std::chrono_literals;

TEST(AbandonableThread, WaitsForABodyThatReturns) {
    const auto owned = std::make_shared<std::atomic<bool>>(false);
    {
        AbandonableThread thread([owned] { *owned = true; });
        thread.leave(1h);
    }
    EXPECT_TRUE(*owned);
    EXPECT_EQ(owned.use_count(), 1) << "the body is gone when leave returns";
}

TEST(AbandonableThread, LeavesAHangingBodyBehind) {
    std::promise<void> release;
    const auto finished = std::make_shared<std::atomic<bool>>(false);
    {
        AbandonableThread thread([finished, gate = release.get_future().share()] {
            gate.wait();
            *finished = true;
        });
        thread.leave(1ms);
    }
    EXPECT_FALSE(*finished);
    release.set_value();
    EXPECT_TRUE(fakes::eventually([&] { return finished->load() && finished.use_count() == 1; }));
}

} // namespace
} // namespace sonarith::sound
