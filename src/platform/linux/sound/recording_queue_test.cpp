// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/recording_queue.h"

#include <gmock/gmock.h>

#include <thread>

#include "support/fake_sound.h"
#include "support/sound_matchers.h"

namespace sonarith::sound {
namespace {

using fakes::IsSound;
using fakes::pattern;
using testing::ElementsAre;
using testing::IsEmpty;

class RecordingQueueTest : public testing::Test {
  protected:
    std::vector<StereoFrame> take(std::size_t most) {
        std::vector<StereoFrame> frames(most);
        frames.resize(queue.take(frames));
        return frames;
    }

    std::vector<RecordingQueue::Flow> flow;
    RecordingQueue queue{[this](RecordingQueue::Flow change) {
        flow.push_back(change);
    }};
};

TEST_F(RecordingQueueTest, HasSpaceForTenSecondsOfSound) {
    EXPECT_EQ(queue.room(), 441'000U);
    queue.record(pattern(0, 440'000));
    EXPECT_EQ(queue.room(), 1000U);
    queue.record(pattern(440'000, 1000));
    EXPECT_EQ(queue.room(), 0U);
    EXPECT_EQ(queue.frames(), 441'000);
    EXPECT_THAT(take(20'000), IsSound(pattern(0, 20'000)));
    EXPECT_EQ(queue.room(), 20'000U);
}

TEST_F(RecordingQueueTest, DeliversTheQueuedFramesAfterEnd) {
    queue.record(pattern(0, 100));
    queue.end();
    queue.record(pattern(100, 100));
    EXPECT_EQ(queue.frames(), 100);
    EXPECT_THAT(take(70), IsSound(pattern(0, 70)));
    EXPECT_THAT(take(70), IsSound(pattern(70, 30)));
    EXPECT_THAT(take(70), IsEmpty());
}

TEST_F(RecordingQueueTest, HasUnlimitedSpaceAfterEndSoThatTheCardNeverStops) {
    queue.record(pattern(0, 441'000));
    queue.end();
    EXPECT_GT(queue.room(), 1'000'000U);
}

TEST_F(RecordingQueueTest, AfterGiveUpTheQueueIsEmptyAndCountsOnlyTheFramesOnTheDisk) {
    queue.record(pattern(0, 50'000));
    queue.giveUp(123);
    queue.record(pattern(0, 1000));
    EXPECT_EQ(queue.frames(), 123);
    EXPECT_GT(queue.room(), 1'000'000U);
    EXPECT_THAT(take(70), IsEmpty());
}

TEST_F(RecordingQueueTest, WakesItsReaderForABatchAndForTheEnd) {
    std::vector<std::size_t> taken;
    std::thread reader([&] {
        std::vector<StereoFrame> frames(RecordingQueue::capacityFrames);
        while (const std::size_t count = queue.take(frames)) {
            taken.push_back(count);
        }
    });
    for (std::size_t i = 0; i < RecordingQueue::batchFrames - 1; ++i) {
        queue.record(pattern(0, 1));
    }
    queue.record(pattern(0, 2));
    while (queue.room() != RecordingQueue::capacityFrames) {
        std::this_thread::yield();
    }
    queue.record(pattern(0, 5));
    queue.end();
    reader.join();
    EXPECT_THAT(taken, ElementsAre(RecordingQueue::batchFrames + 1, 5U));
}

TEST_F(RecordingQueueTest, ReportsAStallOnceAndItsEndOnce) {
    using Flow = RecordingQueue::Flow;
    queue.record(pattern(0, RecordingQueue::stallFrames - 1));
    EXPECT_THAT(flow, IsEmpty());
    queue.record(pattern(0, 1));
    queue.record(pattern(0, 1));
    EXPECT_THAT(flow, ElementsAre(Flow::stalled));
    // While the disk does not catch up, the stall continues.
    EXPECT_EQ(take(44'100).size(), 44'100U);
    queue.record(pattern(0, 44'100));
    EXPECT_THAT(flow, ElementsAre(Flow::stalled));
    EXPECT_EQ(take(RecordingQueue::stallFrames).size(), RecordingQueue::stallFrames);
    EXPECT_THAT(flow, ElementsAre(Flow::stalled, Flow::flowing));
    queue.end();
    EXPECT_EQ(take(10).size(), 1U);
    EXPECT_THAT(flow, ElementsAre(Flow::stalled, Flow::flowing));
}

} // namespace
} // namespace sonarith::sound
