// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/playback_feed.h"

#include <sys/resource.h>

#include <gmock/gmock.h>

#include <thread>
#include <vector>

#include "support/fake_sound.h"
#include "support/sound_matchers.h"

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
    PlaybackFeed feed;
    EXPECT_FALSE(feed.isLeaving());
    std::thread leaver([&] { feed.leave(); });
    feed.awaitSound();
    feed.restUntil(std::chrono::steady_clock::now() + 24h);
    std::vector<StereoFrame> frames(10);
    EXPECT_EQ(feed.take(frames, 24h, 24h), 0U);
    EXPECT_TRUE(feed.isLeaving());
    leaver.join();
}

} // namespace
} // namespace sonarith::sound
