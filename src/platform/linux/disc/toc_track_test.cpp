// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/toc_track.h"

#include <gmock/gmock.h>

namespace sonarith::disc {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

Segment silentSegment(std::int64_t frames) {
    return {.frames = frames};
}
Segment sound(std::int64_t offset, std::int64_t frames) {
    return {.kind = SegmentKind::sound, .offset = offset, .frames = frames};
}

TocTrack audioTrack() {
    return {TrackKind::audio, bytesPerSector, 5};
}

TEST(TocTrack, AStartTimeSplitsTheContentAtTheExactFrame) {
    TocTrack track = audioTrack();
    track.add(silentSegment(100));
    track.add(sound(40, 1000));
    ASSERT_FALSE(track.startAt(1, 6));
    ASSERT_FALSE(track.close());
    EXPECT_THAT(track.content().pause, ElementsAre(silentSegment(100), sound(40, 488)));
    EXPECT_THAT(track.content().body, ElementsAre(sound(40 + 488 * 4, 512)));
}

TEST(TocTrack, AStartTimeLeavesTheIncompleteLastSectorInTheBody) {
    TocTrack track(TrackKind::data, 2048, 5);
    const Segment data{SegmentKind::data, 0, 16, 3 * 588, 2048, 588, 2047};
    track.add(data);
    ASSERT_FALSE(track.startAt(1, 6));
    ASSERT_FALSE(track.close());
    EXPECT_THAT(track.content().pause,
                ElementsAre(Segment{SegmentKind::data, 0, 16, 588, 2048, 588, 0}));
    EXPECT_THAT(track.content().body,
                ElementsAre(Segment{SegmentKind::data, 0, 16 + 2048, 2 * 588, 2048, 588, 2047}));
}

TEST(TocTrack, AStartTimeSplitsASegmentThatExtendsToTheEndOfItsFile) {
    TocTrack track = audioTrack();
    track.add(sound(0, toFileEnd));
    ASSERT_FALSE(track.startAt(2, 6));
    ASSERT_FALSE(track.close());
    EXPECT_THAT(track.content().pause, ElementsAre(sound(0, 1176)));
    EXPECT_THAT(track.content().body, ElementsAre(sound(4704, toFileEnd)));
}

TEST(TocTrack, AStartBetweenTwoSegmentsSplitsNoSegment) {
    TocTrack track = audioTrack();
    track.add(silentSegment(588));
    ASSERT_FALSE(track.startHere(6));
    track.add(silentSegment(1));
    ASSERT_FALSE(track.close());
    EXPECT_THAT(track.content().pause, ElementsAre(silentSegment(588)));
    EXPECT_THAT(track.content().body, ElementsAre(silentSegment(1)));
}

TEST(TocTrack, RefusesMissingContentAndWrongIndexTimesAndASecondStart) {
    TocTrack track = audioTrack();
    EXPECT_FALSE(track.pregap(150, 6));
    EXPECT_EQ(track.startHere(7)->line, 7);
    EXPECT_EQ(track.close()->line, 5)
        << "the error of a track without content must name the line of the TRACK statement";
    track.add(silentSegment(588 * 10));
    EXPECT_FALSE(track.index(5, 8));
    EXPECT_THAT(track.index(5, 9)->cause, HasSubstr("out of order"));
    EXPECT_FALSE(track.close());
    EXPECT_FALSE(track.index(10, 10));
    EXPECT_THAT(track.close()->cause, HasSubstr("INDEX 00:00:10 is beyond"));
}

TEST(TocTrack, RefusesAStartBeyondTheEndOfTheTrack) {
    TocTrack track = audioTrack();
    track.add(silentSegment(588));
    ASSERT_FALSE(track.startAt(2, 6));
    EXPECT_THAT(track.close()->cause, HasSubstr("START 00:00:02 is beyond"));
}

} // namespace
} // namespace sonarith::disc
