// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/mp3_index.h"

#include <gmock/gmock.h>

#include "platform/linux/mp3/mp3_fixture.h"

namespace sonarith::mp3 {
namespace {

using fixture::Data;
using fixture::operator+;

std::vector<Segment> segmentsOf(const Data& data, std::int64_t frames) {
    const MemorySource source(data);
    SegmentIndex index(FrameSequence(source, StreamFormat{}), frames);
    std::vector<Segment> segments;
    while (const auto segment = index.next()) {
        segments.push_back(*segment);
    }
    return segments;
}

TEST(SegmentIndexTest, DividesAllFramesWithoutGapsOrOverlaps) {
    for (const std::int64_t size : {1, 7, 64, 154, 155, 156, 5000}) {
        std::int64_t frames = 0;
        std::int64_t bytes = 417; // the information frame
        for (const Segment& segment : segmentsOf(fixture::ordinary(), size)) {
            EXPECT_EQ(segment.firstFrame, frames);
            EXPECT_TRUE(segment.frames == size || segment.firstFrame + segment.frames == 155);
            EXPECT_LE(segment.preroll.frame, segment.firstFrame);
            frames += segment.frames;
            bytes += segment.sourceBytes;
        }
        EXPECT_EQ(frames, 155);
        EXPECT_LE(bytes, static_cast<std::int64_t>(fixture::ordinary().size()));
    }
}

TEST(SegmentIndexTest, ReturnsTheOffsetAtWhichThePrerollBegins) {
    const auto frames = fixture::framesOf(fixture::ordinary());
    const auto segments = segmentsOf(fixture::ordinary(), 10);
    EXPECT_EQ(segments.size(), 16U);
    for (const Segment& segment : segments) {
        EXPECT_EQ(segment.preroll.offset,
                  frames[static_cast<std::size_t>(segment.preroll.frame)].offset);
    }
}

TEST(SegmentIndexTest, CountsTheSameFramesAndLossesAsASequentialDecoding) {
    const Data& whole = fixture::ordinary();
    const Data damaged = fixture::junk(900) + fixture::part(whole, 0, 30'000) +
                         fixture::junk(4096) + fixture::part(whole, 30'300, SIZE_MAX) +
                         fixture::encoded(48000, 2, "-b 128") + fixture::part(whole, 777, SIZE_MAX);
    const MemorySource source(damaged);
    SegmentIndex index(FrameSequence(source, StreamFormat{}), 16);
    while (index.next()) {
    }
    EXPECT_EQ(index.count(), fixture::sequentially(damaged).count);
    EXPECT_GT(index.count().framesSilenced, 0);
}

TEST(SegmentIndexTest, IncludesEveryFrameBeforeAnUnreadableOffset) {
    const auto frames = fixture::framesOf(fixture::ordinary());
    const auto bad = static_cast<std::size_t>(frames[57].offset) + 100;
    const fixture::BadPlaceSource source(fixture::ordinary(), bad, SIZE_MAX);
    SegmentIndex index(FrameSequence(source, StreamFormat{}), 10);
    std::int64_t count = 0;
    while (const auto segment = index.next()) {
        count += segment->frames;
    }
    EXPECT_EQ(count, 57);
    EXPECT_TRUE(index.failure());
}

} // namespace
} // namespace sonarith::mp3
