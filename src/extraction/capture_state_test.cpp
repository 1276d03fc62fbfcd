// SPDX-License-Identifier: GPL-3.0-or-later
#include "extraction/capture_state.h"

#include <gtest/gtest.h>

namespace sonarith {
namespace {

TrackLengths lengthsOf(std::initializer_list<std::int32_t> milliseconds) {
    TrackLengths lengths;
    lengths.reallocate(static_cast<std::int32_t>(milliseconds.size()));
    std::int32_t track = 1;
    for (const std::int32_t length : milliseconds) {
        EXPECT_TRUE(lengths.set(track++, length).ok());
    }
    return lengths;
}

TEST(TrackLengths, AreNumberedFromOne) {
    const TrackLengths lengths = lengthsOf({100, 200});
    EXPECT_EQ(lengths(1).value(), 100);
    EXPECT_EQ(lengths(2).value(), 200);
}

TEST(TrackLengths, FailForATrackNumberBelowOneOrAboveTheCount) {
    TrackLengths lengths = lengthsOf({100});
    for (const std::int32_t outside : {INT32_MIN, -1, 0, 2, INT32_MAX}) {
        ASSERT_FALSE(lengths(outside).ok()) << outside;
        EXPECT_EQ(lengths(outside).error().number, ErrorNumber::subscriptOutOfRange);
        EXPECT_FALSE(lengths.set(outside, 5).ok()) << outside;
    }
    EXPECT_EQ(lengths(1).value(), 100);
}

TEST(TrackLengths, AreSetToZeroByAReallocation) {
    TrackLengths lengths = lengthsOf({100, 200, 300});
    lengths.reallocate(2);
    EXPECT_EQ(lengths.count(), 2);
    EXPECT_EQ(lengths(1).value(), 0);
    lengths.reallocate(-1);
    EXPECT_EQ(lengths.count(), 0);
}

struct StartCase {
    std::int32_t track;
    double count;
    std::int32_t startMs;
};

TEST(StartOfTrack, IsTheSumOfTheLengthsOfTheEarlierTracks) {
    const TrackLengths lengths = lengthsOf({100, 200, 300});
    const StartCase cases[] = {
        {1, 3, 0},
        {2, 3, 100},
        {3, 3, 300},
        // For a track that does not exist, the result is the sum of all lengths.
        {4, 3, 600},
        {0, 3, 600},
        {9, 1e300, 600},
        {9, 99, 600},
        // The sum includes no track whose number is greater than the track count.
        {3, 2, 300},
        {3, 0, 0},
        {3, -5, 0},
        {3, 1.9, 100},
    };
    for (const StartCase& c : cases) {
        EXPECT_EQ(startOfTrackMs(lengths, c.track, c.count), c.startMs)
            << "track " << c.track << ", track count " << c.count;
    }
}

TEST(StartOfTrack, OmitsALengthThatWouldMakeTheSumOverflow) {
    const TrackLengths lengths = lengthsOf({INT32_MAX - 1, 5, 1, 7});
    EXPECT_EQ(startOfTrackMs(lengths, 3, 4), INT32_MAX - 1);
    EXPECT_EQ(startOfTrackMs(lengths, 4, 4), INT32_MAX);
}

TEST(StartOfTrack, IsZeroWithoutLengths) {
    EXPECT_EQ(startOfTrackMs({}, 5, 12), 0);
}

} // namespace
} // namespace sonarith
