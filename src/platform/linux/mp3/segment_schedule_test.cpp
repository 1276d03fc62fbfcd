// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/segment_schedule.h"

#include <gmock/gmock.h>

#include "platform/linux/mp3/mp3_fixture.h"

namespace sonarith::mp3 {
namespace {

const DecodeFailure fullDisk{DecodeStep::writing, {ErrorNumber::diskFull, "full"}};

/// Tests the schedule without threads, so that a test can choose any interleaving of two workers.
class SegmentScheduleTest : public testing::Test {
  protected:
    /// The worker decodes its segment to the end.
    void finish(std::size_t worker, const Segment& segment) {
        schedule.advance(worker, segment.firstFrame + segment.frames);
    }
    const MemorySource source{fixture::ordinary()}; // 155 frames
    SegmentSchedule schedule{FrameSequence(source, StreamFormat{}), 60, 2};
};

TEST_F(SegmentScheduleTest, IsCompleteWhenEverySegmentIsDecoded) {
    const auto first = schedule.take(0);
    const auto second = schedule.take(1);
    ASSERT_TRUE(first && second);
    finish(1, *second);
    const auto third = schedule.take(1);
    ASSERT_TRUE(third);
    EXPECT_EQ(third->frames, 35);
    finish(1, *third);
    EXPECT_FALSE(schedule.take(1));
    EXPECT_FALSE(schedule.complete()) << "must not be complete before the first segment is decoded";
    EXPECT_EQ(schedule.wholeFrames(), 0);
    schedule.advance(0, 32);
    EXPECT_EQ(schedule.wholeFrames(), 32);
    finish(0, *first);
    EXPECT_TRUE(schedule.complete());
    EXPECT_EQ(schedule.wholeFrames(), 155);
    EXPECT_FALSE(schedule.failure());
    EXPECT_FALSE(schedule.rest());
}

TEST_F(SegmentScheduleTest, IsNotCompleteBeforeEverySegmentIsTaken) {
    const auto first = schedule.take(0);
    finish(0, *first);
    EXPECT_FALSE(schedule.complete()) << "must not be complete before the other segments are taken";
    EXPECT_EQ(schedule.wholeFrames(), 60);
}

TEST_F(SegmentScheduleTest, IsNotCompleteAfterABrokenFrameAndAStop) {
    // A frame of the second segment is broken. The first worker then decodes its segment to the end
    // and gets no further segment. If the decoding is stopped now, before the rest is decoded in
    // one pass, the stream must not count as complete.
    const auto first = schedule.take(0);
    ASSERT_TRUE(schedule.take(1));
    schedule.needOnePass(1);
    finish(0, *first);
    EXPECT_FALSE(schedule.take(0));
    EXPECT_FALSE(schedule.complete());
    EXPECT_EQ(schedule.wholeFrames(), 60);
}

TEST_F(SegmentScheduleTest, DecodingInOnePassBeginsAtTheFirstSegmentThatNeedsIt) {
    ASSERT_TRUE(schedule.take(0));
    ASSERT_TRUE(schedule.take(1));
    schedule.needOnePass(1);
    EXPECT_TRUE(schedule.wanted(0));
    EXPECT_EQ(schedule.rest()->firstFrame, 60);
    schedule.needOnePass(0);
    EXPECT_EQ(schedule.rest()->firstFrame, 0);
    EXPECT_FALSE(schedule.wanted(1));
    EXPECT_EQ(schedule.wholeFrames(), 0);
}

TEST_F(SegmentScheduleTest, SegmentsBeforeAFailedSegmentAreStillDecodedAndNoFurtherSegmentIsTaken) {
    const auto first = schedule.take(0);
    const auto second = schedule.take(1);
    finish(0, *first);
    const auto third = schedule.take(0);
    ASSERT_TRUE(third);
    schedule.fail(0, fullDisk);
    EXPECT_TRUE(schedule.wanted(1));
    EXPECT_FALSE(schedule.take(0));
    finish(1, *second);
    EXPECT_EQ(schedule.wholeFrames(), 120);
    EXPECT_EQ(schedule.failure()->error.text, "full");
    EXPECT_FALSE(schedule.complete());
}

TEST_F(SegmentScheduleTest, TheEarliestSegmentThatFailsOrNeedsOnePassDeterminesTheResult) {
    ASSERT_TRUE(schedule.take(0));
    ASSERT_TRUE(schedule.take(1));
    schedule.needOnePass(1);
    schedule.fail(0, fullDisk);
    EXPECT_EQ(schedule.rest()->firstFrame, 0);
    EXPECT_TRUE(schedule.failure());

    SegmentSchedule other(FrameSequence(source, StreamFormat{}), 60, 2);
    ASSERT_TRUE(other.take(0));
    ASSERT_TRUE(other.take(1));
    other.fail(1, fullDisk);
    other.needOnePass(0);
    EXPECT_EQ(other.rest()->firstFrame, 0);
    EXPECT_FALSE(other.failure());
}

TEST_F(SegmentScheduleTest, AnUnreadableOffsetEndsTheStreamWithAFailure) {
    const auto bad = static_cast<std::size_t>(fixture::framesOf(fixture::ordinary())[70].offset);
    const fixture::BadPlaceSource torn(fixture::ordinary(), bad, SIZE_MAX);
    SegmentSchedule short_(FrameSequence(torn, StreamFormat{}), 60, 1);
    while (const auto segment = short_.take(0)) {
        short_.advance(0, segment->firstFrame + segment->frames);
    }
    EXPECT_EQ(short_.wholeFrames(), 70);
    EXPECT_FALSE(short_.complete());
    ASSERT_TRUE(short_.failure());
    EXPECT_EQ(short_.failure()->step, DecodeStep::reading);
}

} // namespace
} // namespace sonarith::mp3
