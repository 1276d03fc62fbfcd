// SPDX-License-Identifier: GPL-3.0-or-later
#include <atomic>
#include <thread>

#include "platform/linux/sound/playback_fixture.h"
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

TEST_F(PlaybackPumpTest, PlaysAShortSoundCompletely) {
    PlaybackPump pump(opener(), patient);
    play(pump, 0, 1000);
    EXPECT_TRUE(eventually([&] { return device->stopped == 1; }));
    EXPECT_THAT(device->firstPlayed(1000), IsSound(pattern(0, 1000)));
    EXPECT_EQ(device->startedAt.size(), 1U);
}

TEST_F(PlaybackPumpTest, OpensTheDeviceForTheFirstSoundAndNotForTheSilenceBeforeIt) {
    PlaybackPump pump(opener(), endless);
    pump.play(silence(441));
    play(pump, 0, 5000);
    EXPECT_TRUE(eventually([&] { return device->playedFrames() >= 5000; }));
    EXPECT_EQ(device->opened, 1);
    EXPECT_THAT(device->firstPlayed(5000), IsSound(pattern(0, 5000)));
}

TEST_F(PlaybackPumpTest, StartsTheDeviceAfterWritingATenthOfASecondOfSound) {
    PlaybackPump pump(opener(), endless);
    play(pump, 0, 10'000);
    EXPECT_TRUE(eventually([&] { return device->playedFrames() >= 10'000; }));
    const std::lock_guard lock(device->mutex);
    ASSERT_EQ(device->startedAt.size(), 1U);
    EXPECT_GE(device->startedAt.front(), 4410U);
    EXPECT_LT(device->startedAt.front(), 5000U);
}

TEST_F(PlaybackPumpTest, WritesBatchesOfThreeBlocksOfTheCard) {
    endless.batchWait = 1h;
    PlaybackPump pump(opener(), endless);
    play(pump, 0, 21 * blockFrames);
    EXPECT_TRUE(eventually([&] { return device->playedFrames() >= 21 * blockFrames; }));
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
    EXPECT_TRUE(eventually([&] { return device->playedFrames() >= 4 * blockFrames; }));
    EXPECT_THAT(device->firstPlayed(4 * blockFrames), IsSound(pattern(0, 4 * blockFrames)));
}

class PlaybackPumpRecovery : public PlaybackPumpTest, public testing::WithParamInterface<long> {};

TEST_P(PlaybackPumpRecovery, PreparesTheDeviceAndWritesTheRejectedFramesAgain) {
    device->refuseFrom = 6000;
    device->refusals = {GetParam(), GetParam()};
    PlaybackPump pump(opener(), endless);
    play(pump, 0, 11'000);
    EXPECT_TRUE(eventually([&] { return device->playedFrames() >= 11'000; }));
    EXPECT_THAT(device->firstPlayed(11'000), IsSound(pattern(0, 11'000)));
    EXPECT_EQ(device->prepared, 2);
    EXPECT_EQ(device->opened, 1);
    EXPECT_TRUE(eventually([&] {
        const std::lock_guard lock(device->mutex);
        return device->startedAt.size() == 2;
    }));
}

INSTANTIATE_TEST_SUITE_P(UnderrunAndSuspend, PlaybackPumpRecovery,
                         testing::Values(-EPIPE, -ESTRPIPE));

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
    const std::size_t before = device->playedFrames();
    play(pump, 441, 441);
    ASSERT_TRUE(eventually([&] { return device->stopped == 2; }));
    const Frames all = device->firstPlayed(100'000);
    EXPECT_THAT(Frames(all.begin() + static_cast<std::ptrdiff_t>(before),
                       all.begin() + static_cast<std::ptrdiff_t>(before) + 441),
                IsSound(pattern(441, 441)));
    EXPECT_EQ(device->opened, 1);
    EXPECT_EQ(device->prepared, 1);
}

TEST_F(PlaybackPumpTest, PlayAndTheDestructorReturnWhileTheDeviceHangs) {
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
    EXPECT_LE(device->playedFrames(), static_cast<std::size_t>(frameRate) / 2);
    EXPECT_THAT(device->firstPlayed(10'000), IsSound(pattern(0, 10'000)));
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

} // namespace
} // namespace sonarith::sound
