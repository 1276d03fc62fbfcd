// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/playback_feed.h"

#include <sys/resource.h>

#include <gmock/gmock.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "support/fake_sound.h"
#include "support/sound_matchers.h"
#include "support/waiting.h"

namespace sonarith::sound {
namespace {

using namespace std::chrono_literals;
using fakes::IsSound;
using fakes::pattern;
using fakes::silence;

std::vector<StereoFrame> taken(PlaybackFeed& feed, std::size_t wanted) {
    std::vector<StereoFrame> frames(wanted);
    frames.resize(feed.take(frames, 0ms, 0ms));
    return frames;
}

TEST(PlaybackFeed, ReturnsAddedFrames) {
    PlaybackFeed feed;
    feed.add(pattern(0, 100));
    feed.awaitSound();
    EXPECT_THAT(taken(feed, 60), IsSound(pattern(0, 60)));
    EXPECT_THAT(taken(feed, 60), IsSound(pattern(60, 40)));
    EXPECT_TRUE(taken(feed, 60).empty());
}

TEST(PlaybackFeed, DropsSilenceAddedToAnEmptyQueueUnlessADeviceIsOpen) {
    PlaybackFeed feed;
    feed.add(silence(10));
    EXPECT_TRUE(taken(feed, 10).empty());
    feed.setDeviceOpen(true);
    feed.add(silence(10));
    EXPECT_EQ(taken(feed, 10).size(), 10U);
}

TEST(PlaybackFeed, DropsTheSilenceBeforeTheAwaitedSound) {
    PlaybackFeed feed;
    feed.setDeviceOpen(true);
    feed.add(silence(10));
    feed.setDeviceOpen(false);
    feed.add(pattern(0, 5));
    feed.awaitSound();
    EXPECT_THAT(taken(feed, 20), IsSound(pattern(0, 5)));
}

TEST(PlaybackFeed, DoesNotWakeTheTakingThreadForEachAddedBlock) {
    PlaybackFeed feed;
    feed.setDeviceOpen(true);
    constexpr int blocks = 200;
    long waits = 0;
    std::vector<StereoFrame> frames(blocks);
    std::thread taker([&] {
        rusage before{};
        rusage after{};
        ::getrusage(RUSAGE_THREAD, &before);
        frames.resize(feed.take(frames, 30s, 30s));
        ::getrusage(RUSAGE_THREAD, &after);
        waits = after.ru_nvcsw - before.ru_nvcsw;
    });
    for (int i = 0; i < blocks; ++i) {
        feed.add(pattern(i, 1));
        std::this_thread::sleep_for(200us);
    }
    taker.join();
    EXPECT_THAT(frames, IsSound(pattern(0, blocks)));
    EXPECT_LT(waits, blocks / 4);
}

TEST(PlaybackFeed, QueuesAtMostAQuarterOfASecondOfSoundAndForgetsTheQueueOnRequest) {
    PlaybackFeed feed;
    feed.add(pattern(0, frameRate));
    EXPECT_THAT(taken(feed, frameRate), IsSound(pattern(0, frameRate / 4)));
    feed.add(pattern(0, 100));
    feed.forgetQueued();
    EXPECT_TRUE(taken(feed, 100).empty());
}

TEST(PlaybackFeed, EndsEveryWaitWhenLeaveIsCalled) {
    std::vector<StereoFrame> frames(10);
    const std::function<void(PlaybackFeed&)> waits[] = {
        [](PlaybackFeed& feed) { feed.awaitSound(); },
        [](PlaybackFeed& feed) { feed.restUntil(std::chrono::steady_clock::now() + 24h); },
        // This wait is for enough frames to fill `frames`.
        [&](PlaybackFeed& feed) { EXPECT_EQ(feed.take(frames, 24h, 24h), 0U); },
        // This wait is for the first frame.
        [&](PlaybackFeed& feed) {
            EXPECT_EQ(feed.take(frames, 24h, 0ms), 0U);
        }};
    int number = 0;
    for (const auto& wait : waits) {
        SCOPED_TRACE("wait " + std::to_string(number++));
        PlaybackFeed feed;
        EXPECT_FALSE(feed.isLeaving());
        std::atomic<bool> ended = false;
        std::thread waiter([&] {
            wait(feed);
            ended = true;
        });
        std::this_thread::sleep_for(20ms); // until the thread waits
        EXPECT_FALSE(ended);
        feed.leave();
        EXPECT_TRUE(fakes::eventually([&] { return ended.load(); }));
        EXPECT_TRUE(feed.isLeaving());
        waiter.join();
    }
}

TEST(PlaybackFeed, WaitsForNothingAfterLeaveWasCalled) {
    PlaybackFeed feed;
    feed.leave();
    feed.awaitSound();
    feed.restUntil(std::chrono::steady_clock::now() + 24h);
    feed.add(pattern(0, 5));
    std::vector<StereoFrame> frames(10);
    EXPECT_EQ(feed.take(frames, 24h, 24h), 5U);
    EXPECT_EQ(feed.take(frames, 24h, 24h), 0U);
}

} // namespace
} // namespace sonarith::sound
