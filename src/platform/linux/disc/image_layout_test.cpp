// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/image_layout.h"

#include <gmock/gmock.h>

namespace sonarith::disc {
namespace {

using ::testing::ElementsAre;

Segment silence(std::int64_t frames) {
    return {.frames = frames};
}

SheetTrack trackOf(TrackKind kind, std::int64_t pause, std::int64_t body) {
    return {kind, 1, false, {silence(pause)}, {silence(body)}};
}

TEST(JoinPauses, AppendsAPauseToThePrecedingTrackAndLeavesOutThePauseBeforeTheFirstTrack) {
    const auto tracks =
        joinPauses({trackOf(TrackKind::audio, 1, 10), trackOf(TrackKind::audio, 2, 20)});
    ASSERT_EQ(tracks.size(), 2U);
    EXPECT_THAT(tracks[0].segments, ElementsAre(silence(10), silence(2)));
    EXPECT_THAT(tracks[1].segments, ElementsAre(silence(20)));
}

TEST(JoinPauses, LeavesOutThePauseBeforeADataTrackThatFollowsAnAudioTrack) {
    const auto tracks =
        joinPauses({trackOf(TrackKind::audio, 1, 10), trackOf(TrackKind::data, 2, 20)});
    EXPECT_THAT(tracks[0].segments, ElementsAre(silence(10)));
}

TEST(JoinPauses, KeepsThePauseBeforeAnAudioTrackThatFollowsADataTrack) {
    const auto tracks =
        joinPauses({trackOf(TrackKind::data, 1, 10), trackOf(TrackKind::audio, 2, 20)});
    EXPECT_THAT(tracks[0].segments, ElementsAre(silence(10), silence(2)));
}

TEST(JoinPauses, LeavesOutThePauseBeforeANewSession) {
    auto second = trackOf(TrackKind::audio, 2, 20);
    second.opensSession = true;
    EXPECT_THAT(joinPauses({trackOf(TrackKind::audio, 1, 10), second})[0].segments,
                ElementsAre(silence(10)));
}

TEST(StatedBytes, AreExactEvenIfTheStatedLengthEndsInsideASector) {
    EXPECT_EQ(statedBytes({SegmentKind::sound, 0, 44, 1234567}), 4 * 1234567);
    EXPECT_EQ(statedBytes({SegmentKind::data, 0, 16, 3 * 588, 2048}), 3 * 2048);
    EXPECT_EQ(statedBytes({SegmentKind::data, 0, 16, 3 * 588, 2048, 588, 2047}), 4097);
}

TEST(StatedFrames, AreTheSumOfTheLengthsUnlessASegmentExtendsToItsFilesEnd) {
    EXPECT_EQ(statedFrames({}), 0);
    EXPECT_EQ(statedFrames({silence(3), silence(4)}), 7);
    EXPECT_EQ(statedFrames({silence(3), silence(toFileEnd)}), toFileEnd);
}

} // namespace
} // namespace sonarith::disc
