// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/playback_pump.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

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

/// The state of a fake device. It outlives the FakePlayback object, so that a test can inspect the
/// state.
struct PlaybackDevice {
    std::mutex mutex;
    std::condition_variable changed;
    Frames played;                      ///< all written frames
    std::deque<long> refusals;          ///< error codes that the next writes return
    std::size_t refuseFrom = 0;         ///< the refusals begin after this many frames
    std::vector<std::size_t> startedAt; ///< for each start: number of frames written before it
    std::vector<std::size_t> offered;   ///< number of frames passed to each write, accepted or not
    std::function<void()> onStop;       ///< called when it is stopped
    bool hangs = false;                 ///< writes do not return
    bool full = false;                  ///< it accepts no frames
    std::atomic<int> opened = 0;
    std::atomic<int> closed = 0;
    std::atomic<int> prepared = 0;
    std::atomic<int> stopped = 0;
    std::atomic<bool> hanging = false; ///< a write is blocked

    std::size_t heardFrames() {
        const std::lock_guard lock(mutex);
        return played.size();
    }
    Frames firstHeard(std::size_t count) {
        const std::lock_guard lock(mutex);
        return {played.begin(),
                played.begin() + static_cast<std::ptrdiff_t>(std::min(count, played.size()))};
    }
    void release() {
        const std::lock_guard lock(mutex);
        hangs = false;
        changed.notify_all();
    }
};

class FakePlayback : public PcmPlayback {
  public:
    explicit FakePlayback(std::shared_ptr<PlaybackDevice> device) : device_(std::move(device)) {
        ++device_->opened;
    }
    ~FakePlayback() override { ++device_->closed; }

    long write(std::span<const StereoFrame> frames) override {
        std::unique_lock lock(device_->mutex);
        device_->hanging = device_->hangs;
        device_->changed.wait(lock, [this] { return !device_->hangs; });
        device_->offered.push_back(frames.size());
        if (device_->full) {
            return -EAGAIN;
        }
        if (device_->played.size() >= device_->refuseFrom && !device_->refusals.empty()) {
            const long answer = device_->refusals.front();
            device_->refusals.pop_front();
            return answer;
        }
        // Accepts only a part of the frames, as real devices do.
        const std::size_t count = std::min<std::size_t>(frames.size(), 300);
        device_->played.insert(device_->played.end(), frames.begin(),
                               frames.begin() + static_cast<std::ptrdiff_t>(count));
        return static_cast<long>(count);
    }
    int waitForRoom(std::chrono::milliseconds) override { return 0; }
    int prepare() override {
        ++device_->prepared;
        return 0;
    }
    int start() override {
        const std::lock_guard lock(device_->mutex);
        device_->startedAt.push_back(device_->played.size());
        return 0;
    }
    void stop() override {
        ++device_->stopped;
        if (device_->onStop) {
            device_->onStop();
        }
    }
    long queued() override { return 0; }

  private:
    std::shared_ptr<PlaybackDevice> device_;
};

class PlaybackPumpTest : public testing::Test {
  protected:
    /// Passes pattern(first, count) to the pump, in blocks as the card does.
    static void play(PlaybackPump& pump, std::int64_t first, std::size_t count) {
        const Frames frames = pattern(first, count);
        for (std::size_t done = 0; done < count; done += blockFrames) {
            pump.play(std::span(frames).subspan(done, std::min(blockFrames, count - done)));
        }
    }
    OpenPlayback opener() {
        return [device = device] {
            return std::make_unique<FakePlayback>(device);
        };
    }

    std::shared_ptr<PlaybackDevice> device = std::make_shared<PlaybackDevice>();
    PlaybackTiming patient{.closeAfter = 1h, .retryAfter = 1h, .stallLimit = 1h, .patience = 30s};
    /// With these times a sound is never treated as ended, however late the test's thread adds its
    /// next block.
    PlaybackTiming endless{
        .dryAfter = 1h, .closeAfter = 1h, .retryAfter = 1h, .stallLimit = 1h, .patience = 30s};
};

TEST_F(PlaybackPumpTest, PlaysAShortSoundCompletely) {
    PlaybackPump pump(opener(), patient);
    play(pump, 0, 1000);
    EXPECT_TRUE(eventually([&] { return device->stopped == 1; }));
    EXPECT_THAT(device->firstHeard(1000), IsSound(pattern(0, 1000)));
    EXPECT_EQ(device->startedAt.size(), 1U);
}

TEST_F(PlaybackPumpTest, OpensTheDeviceForTheFirstSoundAndNotForTheSilenceBeforeIt) {
    PlaybackPump pump(opener(), endless);
    pump.play(silence(441));
    play(pump, 0, 5000);
    EXPECT_TRUE(eventually([&] { return device->heardFrames() >= 5000; }));
    EXPECT_EQ(device->opened, 1);
    EXPECT_THAT(device->firstHeard(5000), IsSound(pattern(0, 5000)));
}

TEST_F(PlaybackPumpTest, StartsTheDeviceAfterWritingATenthOfASecondOfSound) {
    PlaybackPump pump(opener(), endless);
    play(pump, 0, 10'000);
    EXPECT_TRUE(eventually([&] { return device->heardFrames() >= 10'000; }));
    const std::lock_guard lock(device->mutex);
    ASSERT_EQ(device->startedAt.size(), 1U);
    EXPECT_GE(device->startedAt.front(), 4410U);
    EXPECT_LT(device->startedAt.front(), 5000U);
}

TEST_F(PlaybackPumpTest, WritesBatchesOfThreeBlocksOfTheCard) {
    endless.batchWait = 1h;
    PlaybackPump pump(opener(), endless);
    play(pump, 0, 21 * blockFrames);
    EXPECT_TRUE(eventually([&] { return device->heardFrames() >= 21 * blockFrames; }));
    const std::lock_guard lock(device->mutex);
    // The device accepts at most 300 of the frames that a write offers, so a batch needs five
    // writes. Only the first of them offers the whole batch; each later one offers the frames that
    // are left.
    const auto batches =
        std::count(device->offered.begin(), device->offered.end(), 3 * blockFrames);
    EXPECT_EQ(batches, 7);
    EXPECT_EQ(device->offered.size(), 7U * 5U);
}

TEST_F(PlaybackPumpTest, WritesAnIncompleteBatchAfterTheBatchWait) {
    endless.batchWait = 5ms;
    PlaybackPump pump(opener(), endless);
    play(pump, 0, 4 * blockFrames);
    EXPECT_TRUE(eventually([&] { return device->heardFrames() >= 4 * blockFrames; }));
    EXPECT_THAT(device->firstHeard(4 * blockFrames), IsSound(pattern(0, 4 * blockFrames)));
}

class PlaybackPumpRecovery : public PlaybackPumpTest, public testing::WithParamInterface<long> {};

TEST_P(PlaybackPumpRecovery, PreparesTheDeviceAndWritesTheRejectedFramesAgain) {
    device->refuseFrom = 6000;
    device->refusals = {GetParam(), GetParam()};
    PlaybackPump pump(opener(), endless);
    play(pump, 0, 11'000);
    EXPECT_TRUE(eventually([&] { return device->heardFrames() >= 11'000; }));
    EXPECT_THAT(device->firstHeard(11'000), IsSound(pattern(0, 11'000)));
    EXPECT_EQ(device->prepared, 2);
    EXPECT_EQ(device->opened, 1);
    EXPECT_TRUE(eventually([&] {
        const std::lock_guard lock(device->mutex);
        return device->startedAt.size() == 2;
    }));
}

INSTANTIATE_TEST_SUITE_P(UnderrunAndSuspend, PlaybackPumpRecovery,
                         testing::Values(-EPIPE, -ESTRPIPE));

class PlaybackPumpLoss : public PlaybackPumpTest, public testing::WithParamInterface<long> {};

TEST_P(PlaybackPumpLoss, OpensALostDeviceAgainWhileSoundFlows) {
    device->refusals = {GetParam()};
    patient.retryAfter = 1ms;
    PlaybackPump pump(opener(), patient);
    EXPECT_TRUE(eventually([&] {
        play(pump, 0, 441);
        return device->opened == 2 && device->heardFrames() > 0;
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

TEST_F(PlaybackPumpTest, ClosesTheDeviceAfterSilence) {
    patient.closeAfter = 100ms;
    PlaybackPump pump(opener(), patient);
    play(pump, 0, 441);
    EXPECT_TRUE(eventually([&] {
        pump.play(silence(441));
        return device->closed == 1;
    }));
    pump.play(silence(441));
    std::this_thread::sleep_for(20ms);
    EXPECT_EQ(device->opened, 1) << "silence must not open the device again";
}

TEST_F(PlaybackPumpTest, DoesNotOpenTheDeviceAgainForSilenceAddedWhileItCloses) {
    patient.closeAfter = 100ms;
    PlaybackPump pump(opener(), patient);
    device->onStop = [&pump] {
        pump.play(silence(441));
    };
    play(pump, 0, 441);
    pump.play(silence(frameRate / 8));
    ASSERT_TRUE(eventually([&] { return device->closed == 1; }));
    std::this_thread::sleep_for(20ms);
    EXPECT_EQ(device->opened, 1);
}

TEST_F(PlaybackPumpTest, ClosesTheDeviceWhenNoMoreFramesArrive) {
    patient.closeAfter = 1ms;
    PlaybackPump pump(opener(), patient);
    play(pump, 0, 441);
    EXPECT_TRUE(eventually([&] { return device->closed == 1; }));
}

TEST_F(PlaybackPumpTest, PlaysASecondSoundOnTheDeviceThatIsStillOpen) {
    PlaybackPump pump(opener(), patient);
    play(pump, 0, 441);
    ASSERT_TRUE(eventually([&] { return device->stopped == 1; }));
    const std::size_t before = device->heardFrames();
    play(pump, 441, 441);
    ASSERT_TRUE(eventually([&] { return device->stopped == 2; }));
    const Frames all = device->firstHeard(100'000);
    EXPECT_THAT(Frames(all.begin() + static_cast<std::ptrdiff_t>(before),
                       all.begin() + static_cast<std::ptrdiff_t>(before) + 441),
                IsSound(pattern(441, 441)));
    EXPECT_EQ(device->opened, 1);
    EXPECT_EQ(device->prepared, 1);
}

TEST_F(PlaybackPumpTest, NeitherPlayNorTheDestructorIsBlockedByAHangingDevice) {
    device->hangs = true;
    patient.patience = 1ms;
    {
        PlaybackPump pump(opener(), patient);
        play(pump, 0, 10 * frameRate); // would never return if it waited for the device
        ASSERT_TRUE(eventually([&] { return device->hanging.load(); }));
    }
    EXPECT_EQ(device->closed, 0);
    device->release();
    EXPECT_TRUE(eventually([&] { return device->closed == device->opened; }));
}

TEST_F(PlaybackPumpTest, DropsFramesThatDoNotFitIntoItsQueue) {
    device->hangs = true;
    PlaybackPump pump(opener(), patient);
    play(pump, 0, 10 * frameRate);
    ASSERT_TRUE(eventually([&] { return device->hanging.load(); }));
    device->release();
    ASSERT_TRUE(eventually([&] { return device->stopped == 1; }));
    // At most a quarter of a second was queued, and one batch was being written.
    EXPECT_LE(device->heardFrames(), static_cast<std::size_t>(frameRate) / 2);
    EXPECT_THAT(device->firstHeard(10'000), IsSound(pattern(0, 10'000)));
}

TEST_F(PlaybackPumpTest, CanBeDestroyedIfTheDeviceCannotBeOpened) {
    std::atomic<int> attempts = 0;
    PlaybackPump pump(
        [&attempts]() -> std::unique_ptr<PcmPlayback> {
            ++attempts;
            return nullptr;
        },
        patient);
    play(pump, 0, 441);
    EXPECT_TRUE(eventually([&] { return attempts == 1; }));
}

TEST_F(PlaybackPumpTest, ReportsThatTheDeviceIsLostAndThatItPlaysAgain) {
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
        EXPECT_GE(device->heardFrames(), static_cast<std::size_t>(frameRate) / 2)
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

TEST_F(PlaybackPumpTest, ReportsThatTheDeviceWorksEvenIfTheSoundIsShort) {
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
        << "the pump must not try to start a thread again before the hour of retryAfter has passed";
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
