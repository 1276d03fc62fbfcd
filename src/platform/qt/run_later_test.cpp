// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/run_later.h"

#include <memory>

#include <QObject>
#include <gtest/gtest.h>

#include "platform/qt/qt_event_loop.h"
#include "platform/qt/qt_waiting.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;

class RunLaterTest : public testing::Test {
  protected:
    QtEventLoop loop;
    std::unique_ptr<QObject> context = std::make_unique<QObject>();
    int runs = 0;
};

TEST_F(RunLaterTest, RunsTheWorkExactlyOnceWhenTheLoopContinues) {
    runLater(*context, [this] { ++runs; });
    EXPECT_EQ(runs, 0);
    loop.yield();
    loop.yield();
    EXPECT_EQ(runs, 1);
}

TEST_F(RunLaterTest, RunsNothingForADestroyedContext) {
    runLater(*context, [this] { ++runs; });
    context.reset();
    loop.yield();
    EXPECT_EQ(runs, 0);
}

TEST_F(RunLaterTest, TheWorkMayDestroyTheContextAndYield) {
    runLater(*context, [this] {
        context.reset();
        ++runs;
        loop.yield();
    });
    loop.yield();
    EXPECT_EQ(runs, 1);
}

TEST_F(RunLaterTest, RunsNothingWithinAWait) {
    QtWaiting waiting;
    runLater(*context, [this] { ++runs; });
    const Completion never;
    EXPECT_EQ(waiting.wait(never, 120ms), Waiting::Outcome::late);
    EXPECT_EQ(runs, 0);
    loop.yield();
    EXPECT_EQ(runs, 1);
}

} // namespace
} // namespace sonarith
