// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/disc.h"

#include <gmock/gmock.h>

#include <set>

namespace sonarith::disc {
namespace {

using ::testing::Each;
using ::testing::Ge;
using ::testing::Le;
using ::testing::MatchesRegex;

Table threeTracks() {
    return {{{TrackKind::audio, 300}, {TrackKind::audio, 400}, {TrackKind::data, 500}}};
}

TEST(Table, ATrackStartsWhereThePreviousTrackEnds) {
    const Table table = threeTracks();
    EXPECT_EQ(table.start(1), 0);
    EXPECT_EQ(table.start(2), 300);
    EXPECT_EQ(table.start(3), 700);
}

TEST(Table, TheStartAfterTheLastTrackIsTheEndOfTheTimeLine) {
    EXPECT_EQ(threeTracks().start(4), 1200);
    EXPECT_EQ(threeTracks().sectors(), 1200);
}

TEST(Table, ASectorBelongsToTheTrackThatContainsIt) {
    const Table table = threeTracks();
    EXPECT_EQ(table.trackAt(0), 1);
    EXPECT_EQ(table.trackAt(299), 1);
    EXPECT_EQ(table.trackAt(300), 2);
    EXPECT_EQ(table.trackAt(699), 2);
    EXPECT_EQ(table.trackAt(1199), 3);
}

TEST(Table, BeyondTheEndOfTheTimeLineTheLastTrackIsReturned) {
    EXPECT_EQ(threeTracks().trackAt(1200), 3);
    EXPECT_EQ(threeTracks().trackAt(99999), 3);
}

TEST(Table, AnEmptyTableHasNoTrackAndNoLength) {
    EXPECT_EQ(Table{}.trackAt(0), 0);
    EXPECT_EQ(Table{}.sectors(), 0);
    EXPECT_EQ(Table{}.start(1), 0);
}

TEST(Identity, EqualTablesHaveEqualIdentities) {
    EXPECT_EQ(identityOf(threeTracks()), identityOf(threeTracks()));
}

TEST(Identity, DependsOnTheLengthAndKindOfEachTrack) {
    Table longer = threeTracks();
    longer.tracks[1].sectors += 1;
    Table playable = threeTracks();
    playable.tracks[2].kind = TrackKind::audio;
    EXPECT_NE(identityOf(longer), identityOf(threeTracks()));
    EXPECT_NE(identityOf(playable), identityOf(threeTracks()));
}

TEST(Identity, IsFrom1To2147483646AndDiffersForDifferentLengths) {
    std::vector<std::int64_t> identities;
    for (int sectors = 1; sectors <= 2000; ++sectors) {
        const std::string identity = identityOf({{{TrackKind::audio, sectors}}});
        ASSERT_THAT(identity, MatchesRegex("[0-9]+"));
        identities.push_back(std::stoll(identity));
    }
    EXPECT_THAT(identities, Each(Ge(1)));
    EXPECT_THAT(identities, Each(Le(2147483646)));
    EXPECT_EQ(std::set(identities.begin(), identities.end()).size(), identities.size());
}

TEST(Identity, IsTheSameInAllVersionsOfTheProgram) {
    // The user sees the identity as the CD ID, and the logic computes the number in a capture's
    // file name from it. Only this test detects a change of the hash function in identityOf().
    EXPECT_EQ(identityOf({{{TrackKind::audio, 300}}}), "1454843024");
}

} // namespace
} // namespace sonarith::disc
