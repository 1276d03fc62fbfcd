// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/frame_queue.h"

#include <gmock/gmock.h>

#include "support/fake_sound.h"
#include "support/memory_use.h"
#include "support/sound_matchers.h"

namespace sonarith::sound {
namespace {

using fakes::IsSound;

TEST(FrameQueue, ReturnsFramesInOrderAcrossTheEndOfItsBuffer) {
    FrameQueue queue(10);
    // One frame always remains: an empty queue would begin at the start of its buffer again.
    ASSERT_EQ(queue.push(fakes::pattern(0, 1)), 1U);
    std::int64_t in = 1;
    std::int64_t out = 0;
    for (int round = 0; round < 20; ++round) {
        ASSERT_EQ(queue.push(fakes::pattern(in, 7)), 7U);
        in += 7;
        std::vector<StereoFrame> taken(7);
        ASSERT_EQ(queue.pop(taken), 7U);
        ASSERT_THAT(taken, IsSound(fakes::pattern(out, 7)));
        out += 7;
    }
    EXPECT_FALSE(queue.empty());
}

TEST(FrameQueue, AcceptsOnlyFramesThatFit) {
    FrameQueue queue(10);
    EXPECT_EQ(queue.push(fakes::pattern(0, 8)), 8U);
    EXPECT_EQ(queue.push(fakes::pattern(8, 8)), 2U);
    std::vector<StereoFrame> taken(20);
    EXPECT_EQ(queue.pop(taken), 10U);
    taken.resize(10);
    EXPECT_THAT(taken, IsSound(fakes::pattern(0, 10)));
}

TEST(FrameQueue, PopLeavesTheRestOfTheSpanUnchangedIfTheQueueHasTooFewFrames) {
    FrameQueue queue(3);
    queue.push(fakes::pattern(0, 1));
    std::vector<StereoFrame> taken = fakes::pattern(7, 2);
    EXPECT_EQ(queue.pop(taken), 1U);
    EXPECT_EQ(taken[0], fakes::patternFrame(0));
    EXPECT_EQ(taken[1], fakes::patternFrame(8));
}

TEST(FrameQueue, IsEmptyAfterClear) {
    FrameQueue queue(3);
    queue.push(fakes::pattern(0, 2));
    EXPECT_EQ(queue.space(), 1U);
    queue.clear();
    EXPECT_EQ(queue.space(), 3U);
    std::vector<StereoFrame> taken(2);
    EXPECT_EQ(queue.pop(taken), 0U);
}

TEST(FrameQueue, DropRemovesAsManyFramesAsRequestedOrAllIfThereAreFewer) {
    FrameQueue queue(10);
    queue.push(fakes::pattern(0, 8));
    queue.drop(5);
    EXPECT_EQ(queue.size(), 3U);
    queue.drop(100);
    EXPECT_TRUE(queue.empty());
}

TEST(FrameQueue, DropsTheSilenceBeforeASoundButNotTheSilenceAfterIt) {
    FrameQueue queue(10);
    queue.push(fakes::silence(3));
    queue.push(fakes::pattern(0, 1));
    queue.push(fakes::silence(2));
    queue.dropSilence();
    EXPECT_EQ(queue.size(), 3U);
}

TEST(FrameQueue, UsesLittleMemoryOfALargeBufferIfItIsOftenEmpty) {
    constexpr std::size_t capacity = 16 * 1024 * 1024; // in frames, which occupy 64 MiB
    constexpr std::size_t batch = 4410;
    FrameQueue queue(capacity);
    const std::vector<StereoFrame> frames(batch);
    std::vector<StereoFrame> taken(batch);
    const std::int64_t before = test::memoryInKibibytes();
    for (std::size_t passed = 0; passed < 2 * capacity; passed += batch) {
        ASSERT_EQ(queue.push(frames), batch);
        ASSERT_EQ(queue.pop(taken), batch);
    }
    EXPECT_LT(test::memoryInKibibytes() - before, 2048);
}

} // namespace
} // namespace sonarith::sound
