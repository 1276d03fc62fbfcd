// SPDX-License-Identifier: GPL-3.0-or-later
#include "conversion/worker_window.h"

#include "support/conversion_world.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;

struct WorkerWindowTest : test::ConversionWorld {
    WorkerWindowTest() {
        mp3File("c:\\mp3\\a.mp3");
        process.currentFile = "c:\\mp3\\a.mp3";
    }
};

TEST_F(WorkerWindowTest, HasNoWorkerBeforeTheFirstLoad) {
    EXPECT_EQ(workers.worker(), nullptr);
    workers.unload();
    EXPECT_FALSE(process.workerBusy);
}

TEST_F(WorkerWindowTest, ALoadInsideATickKeepsTheTickingWorkerUntilItHasReturned) {
    mp3.duration = 10s;
    windows.Form6.load();
    ConversionWorker* const former = workers.worker();
    bool ran = false;
    loop.atYield(1, [&] {
        ran = true;
        windows.Form6.unload();
        windows.Form6.load();
        EXPECT_NE(workers.worker(), former);
        EXPECT_TRUE(former->running());
        windows.Form6.unload();
        windows.Form6.load();
        EXPECT_TRUE(former->running());
    });
    loop.advance(500ms);
    EXPECT_TRUE(ran);
    EXPECT_FALSE(workers.worker()->running());
}

TEST_F(WorkerWindowTest, ASecondLoadIsNoLoad) {
    windows.Form6.load();
    const ConversionWorker* const loaded = workers.worker();
    windows.Form6.load();
    EXPECT_EQ(workers.worker(), loaded);
}

} // namespace
} // namespace sonarith
