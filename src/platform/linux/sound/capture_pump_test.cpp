// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/capture_pump.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <chrono>
#include <mutex>
#include <vector>

#include "platform/linux/sound/capture_fixture.h"
#include "support/device_reports.h"
#include "support/fake_sound.h"
#include "support/limited_threads.h"
#include "support/sound_matchers.h"
#include "support/waiting.h"

namespace sonarith::sound {
namespace {

using namespace std::chrono_literals;
using fakes::eventually;
using fakes::IsSound;
using fakes::pattern;
using fakes::silence;

using Frames = std::vector<StereoFrame>;

class CapturePumpTest : public testing::Test {
  protected:
    OpenCapture opener() { return openerOf(device); }
    /// Pulls a block, which the pump must always fill.
    static Frames pull(CapturePump& pump, std::size_t count) {
        Frames block(count, StereoFrame{99, 99});
        const Pulled pulled = pump.pull(block);
        EXPECT_EQ(pulled.frames, count);
        EXPECT_EQ(pulled.supply, Supply::flowing);
        return block;
    }
    /// Pulls blocks until one of them is not silent; returns that block.
    static Frames pullSound(CapturePump& pump, std::size_t count) {
        Frames block;
        EXPECT_TRUE(eventually([&] {
            block = pull(pump, count);
            return block != silence(count);
        }));
        return block;
    }

    std::shared_ptr<CaptureDevice> device = std::make_shared<CaptureDevice>();
    CaptureTiming timing{.retryAfter = 1ms, .patience = 30s};
};

TEST_F(CapturePumpTest, IsSilentWhileTheDeviceHasNoData) {
    CapturePump pump(opener(), timing);
    EXPECT_THAT(pull(pump, 441), IsSound(silence(441)));
}

TEST_F(CapturePumpTest, IsSilentIfThereIsNoDevice) {
    CapturePump pump([] { return nullptr; }, timing);
    EXPECT_THAT(pull(pump, 441), IsSound(silence(441)));
}

TEST_F(CapturePumpTest, DeliversTheDevicesSoundWithoutAGap) {
    device->provide(20'000);
    CapturePump pump(opener(), timing);
    ASSERT_TRUE(eventually([&] { return device->isDrained(); }));
    Frames all = pullSound(pump, 441);
    while (all.size() < 40 * 441) {
        const Frames block = pull(pump, 441);
        all.insert(all.end(), block.begin(), block.end());
    }
    EXPECT_THAT(all, IsSound(pattern(0, 40 * 441)));
}

TEST_F(CapturePumpTest, AfterItsBufferRanEmptyItIsSilentUntilEnoughFramesAreBuffered) {
    device->provide(441 * 7);
    CapturePump pump(opener(), timing);
    ASSERT_TRUE(eventually([&] { return device->isDrained(); }));
    pullSound(pump, 441 * 5);
    pull(pump, 441 * 3); // the last two blocks of sound and one silent block
    device->provide(441);
    ASSERT_TRUE(eventually([&] { return device->isDrained(); }));
    EXPECT_THAT(pull(pump, 441), IsSound(silence(441)));
    device->provide(441 * 8);
    EXPECT_THAT(pullSound(pump, 441), IsSound(pattern(441 * 7, 441)));
}

TEST_F(CapturePumpTest, RestartsADeviceAfterAnOverrunAndAfterASuspension) {
    device->refusals = {-EPIPE, -ESTRPIPE};
    device->provide(10'000);
    CapturePump pump(opener(), timing);
    EXPECT_THAT(pullSound(pump, 441), IsSound(pattern(0, 441)));
    EXPECT_EQ(device->restarts, 3); // after the opening, the overrun and the suspension
    EXPECT_EQ(device->opened, 1);
}

TEST_F(CapturePumpTest, OpensALostDeviceAgain) {
    device->refusals = {-ENODEV};
    device->provide(10'000);
    CapturePump pump(opener(), timing);
    EXPECT_THAT(pullSound(pump, 441), IsSound(pattern(0, 441)));
    EXPECT_EQ(device->opened, 2);
    EXPECT_EQ(device->closed, 1);
}

TEST_F(CapturePumpTest, DropsTheOldestFramesIfNoFramesArePulled) {
    device->provide(3 * frameRate);
    CapturePump pump(opener(), timing);
    ASSERT_TRUE(eventually([&] { return device->isDrained(); }));
    const Frames block = pullSound(pump, 441);
    EXPECT_THAT(block, IsSound(pattern(3 * frameRate - frameRate / 2, 441)));
}

TEST_F(CapturePumpTest, ItsDestructorReturnsWhileTheDeviceHangs) {
    device->hangs = true;
    timing.patience = 1ms;
    {
        CapturePump pump(opener(), timing);
        EXPECT_THAT(pull(pump, 441), IsSound(silence(441)));
    }
    device->release();
    EXPECT_TRUE(eventually([&] { return device->closed == device->opened; }));
}

TEST_F(CapturePumpTest, ReturnsTheResultOfTheLastAttemptToOpenTheDevice) {
    {
        CapturePump pump(opener(), timing);
        EXPECT_EQ(pump.opening(30s), CapturePump::Opening::open);
    }
    device->missing = true;
    CapturePump pump(opener(), timing);
    EXPECT_EQ(pump.opening(30s), CapturePump::Opening::failed);
    device->missing = false;
    EXPECT_TRUE(eventually([&] { return pump.opening(0ms) == CapturePump::Opening::open; }));
}

TEST_F(CapturePumpTest, IsSilentAndCanBeDestroyedWhileTheOpeningOfTheDeviceHangs) {
    device->openHangs = true;
    timing.patience = 1ms;
    {
        CapturePump pump(opener(), timing);
        EXPECT_EQ(pump.opening(1ms), CapturePump::Opening::pending);
        EXPECT_THAT(pull(pump, 441), IsSound(silence(441)));
    }
    device->release();
    EXPECT_TRUE(eventually([&] { return device.use_count() == 1; }));
}

TEST_F(CapturePumpTest, ReportsALostDeviceAndIsSilentUntilTheDeviceReturns) {
    fakes::DeviceReports reports;
    device->provide(441 * 20);
    {
        CapturePump pump(opener(), timing, reports.sink());
        pullSound(pump, 441);
        EXPECT_TRUE(eventually([&] { return reports.hold(DeviceState::works); }));
        EXPECT_FALSE(reports.hold(DeviceState::lost));
        {
            const std::lock_guard lock(device->mutex);
            device->missing = true;
            device->refusals = {-ENODEV};
        }
        EXPECT_TRUE(eventually([&] { return reports.hold(DeviceState::lost); }));
        EXPECT_TRUE(eventually([&] { return pull(pump, 441) == silence(441); }));
        device->missing = false;
        device->provide(441 * 20);
        pullSound(pump, 441);
        EXPECT_TRUE(eventually([&] { return reports.states().back() == DeviceState::works; }));
    }
    EXPECT_EQ(reports.states().back(), DeviceState::unused);
}

TEST_F(CapturePumpTest, ADeviceThatWasNeverOpenIsReportedAsLostOnlyAfterTwoFailedOpenings) {
    fakes::DeviceReports reports;
    device->missing = true;
    timing.retryAfter = 24h;
    {
        const CapturePump once(opener(), timing, reports.sink());
        ASSERT_TRUE(eventually([&] { return device->refused == 1; }));
    }
    EXPECT_EQ(reports.states(), std::vector{DeviceState::unused});
    timing.retryAfter = 1ms;
    const CapturePump again(opener(), timing, reports.sink());
    EXPECT_TRUE(eventually([&] { return reports.hold(DeviceState::lost); }));
}

TEST_F(CapturePumpTest, IsSilentAndReportsItsDeviceAsLostIfNoThreadCanBeStarted) {
    const fakes::LimitedThreads threads(0);
    fakes::DeviceReports reports;
    {
        CapturePump pump(opener(), timing, reports.sink(), threads.starter());
        EXPECT_EQ(pump.opening(0ms), CapturePump::Opening::failed);
        EXPECT_EQ(reports.states(), std::vector{DeviceState::lost});
        EXPECT_THAT(pull(pump, 441), IsSound(silence(441)));
    }
    EXPECT_EQ(reports.states(), (std::vector{DeviceState::lost, DeviceState::unused}));
}

} // namespace
} // namespace sonarith::sound
