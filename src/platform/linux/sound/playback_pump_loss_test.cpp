// SPDX-License-Identifier: GPL-3.0-or-later
// Tests a pump whose device is lost or missing, or whose thread cannot be started. Also tests the
// reports of the pump.
#include <thread>

#include "platform/linux/sound/playback_fixture.h"
#include "support/device_reports.h"
#include "support/limited_threads.h"
#include "support/waiting.h"

namespace sonarith::sound {
namespace {

using namespace std::chrono_literals;
using fakes::eventually;
using fakes::pattern;

class PlaybackPumpLoss : public PlaybackPumpTest, public testing::WithParamInterface<long> {};

TEST_P(PlaybackPumpLoss, OpensALostDeviceAgainWhileSoundFlows) {
    device->refusals = {GetParam()};
    patient.retryAfter = 1ms;
    PlaybackPump pump(opener(), patient);
    EXPECT_TRUE(eventually([&] {
        play(pump, 0, 441);
        return device->opened == 2 && device->playedFrames() > 0;
    }));
    EXPECT_EQ(device->closed, 1);
}

TEST_P(PlaybackPumpLoss, DoesNotOpenALostDeviceAgainBeforeTheRetryDelayHasPassed) {
    device->refusals = {GetParam()};
    PlaybackPump pump(opener(), patient);
    play(pump, 0, 441);
    ASSERT_TRUE(eventually([&] { return device->closed == 1; }));
    for (int i = 0; i < 100; ++i) {
        play(pump, 0, 441);
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(device->opened, 1);
}

INSTANTIATE_TEST_SUITE_P(UnpluggedAndBroken, PlaybackPumpLoss,
                         testing::Values(-ENODEV, -EIO, -EBADFD));

TEST_F(PlaybackPumpTest, ClosesADeviceThatAlwaysUnderruns) {
    device->refusals = std::deque<long>(1000, -EPIPE);
    PlaybackPump pump(opener(), patient);
    play(pump, 0, 441);
    EXPECT_TRUE(eventually([&] { return device->closed == 1; }));
}

TEST_F(PlaybackPumpTest, ClosesADeviceThatAcceptsNothing) {
    device->full = true;
    patient.stallLimit = 5ms;
    PlaybackPump pump(opener(), patient);
    play(pump, 0, 441);
    EXPECT_TRUE(eventually([&] { return device->closed == 1; }));
}

TEST_F(PlaybackPumpTest, ReportsWhenTheDeviceIsLostAndWhenItWorks) {
    fakes::DeviceReports reports;
    std::atomic<bool> missing = true;
    patient.retryAfter = 1ms;
    {
        PlaybackPump pump(
            [&]() -> std::unique_ptr<PcmPlayback> {
                return missing ? nullptr : std::make_unique<FakePlayback>(device);
            },
            patient, reports.sink());
        EXPECT_TRUE(eventually([&] {
            play(pump, 0, 441);
            return reports.hold(DeviceState::lost);
        }));
        missing = false;
        EXPECT_TRUE(eventually([&] {
            play(pump, 0, 441);
            // The delay lets the pump read the queue faster than the test fills it.
            std::this_thread::sleep_for(5ms);
            return reports.hold(DeviceState::works);
        }));
        EXPECT_GE(device->playedFrames(), static_cast<std::size_t>(frameRate) / 2)
            << "the device must not be reported as working before it has accepted half a second "
               "of sound: it might still fail";
        device->refuseFrom = 0;
        {
            const std::lock_guard lock(device->mutex);
            device->refusals = {-ENODEV};
        }
        missing = true;
        EXPECT_TRUE(eventually([&] {
            play(pump, 0, 441);
            return reports.states().back() == DeviceState::lost;
        }));
    }
    EXPECT_EQ(reports.states().back(), DeviceState::unused);
}

TEST_F(PlaybackPumpTest, ClosingTheDeviceAfterAShortSoundReportsThatItWorks) {
    fakes::DeviceReports reports;
    patient.closeAfter = 1ms;
    PlaybackPump pump(opener(), patient, reports.sink());
    play(pump, 0, 441);
    EXPECT_TRUE(eventually([&] { return reports.hold(DeviceState::works); }));
}

TEST_F(PlaybackPumpTest, TriesToStartItsThreadAgainWhenTheRetryDelayHasPassed) {
    fakes::LimitedThreads threads(0);
    fakes::DeviceReports reports;
    PlaybackPump waiting(opener(), endless, reports.sink(), threads.starter());
    EXPECT_EQ(reports.states(), std::vector{DeviceState::lost});
    play(waiting, 0, 2000);
    EXPECT_EQ(threads.refused(), 1)
        << "the pump must not try to start a thread again before retryAfter (here one hour) has "
           "passed";
    endless.retryAfter = 0ms;
    PlaybackPump pump(opener(), endless, reports.sink(), threads.starter());
    pump.play(pattern(0, 441));
    EXPECT_EQ(threads.refused(), 3);
    threads.free(1);
    EXPECT_TRUE(eventually([&] {
        play(pump, 0, 441);
        return reports.hold(DeviceState::works);
    }));
}

} // namespace
} // namespace sonarith::sound
