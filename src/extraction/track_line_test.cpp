// SPDX-License-Identifier: GPL-3.0-or-later
#include "extraction/track_line.h"

#include <gtest/gtest.h>

namespace sonarith {
namespace {

TEST(TrackLine, RightAlignsTheNumberInTwoCharacters) {
    EXPECT_EQ(trackLine(1, "00:03:05"), "Track  1 - 00:03:05");
    EXPECT_EQ(trackLine(12, "00:03:05"), "Track 12 - 00:03:05");
}

TEST(TrackLine, WritesOnlyTheFirstTwoDigitsOfALongerNumber) {
    EXPECT_EQ(trackLine(123, "x"), "Track 12 - x");
}

TEST(TrackLine, EndsWithTheLengthExactlyAsTheDeviceReportsIt) {
    EXPECT_EQ(trackLine(2, ""), "Track  2 - ");
    EXPECT_EQ(trackLine(2, "3m 5s"), "Track  2 - 3m 5s");
}

TEST(TrackLine, ReadsTheNumberFromTheSixthToTheEighthCharacter) {
    EXPECT_EQ(trackNumberIn("Track  1 - 00:03:05").valueOr(-1), 1);
    EXPECT_EQ(trackNumberIn("Track 12 - 00:03:05").valueOr(-1), 12);
    // trackNumberIn() reads three characters, although trackLine() writes the number in two.
    EXPECT_EQ(trackNumberIn("Track123 - 00:03:05").valueOr(-1), 123);
    EXPECT_EQ(trackNumberIn("Track1234").valueOr(-1), 123);
}

TEST(TrackLine, ReadsZeroIfThereIsNoNumber) {
    EXPECT_EQ(trackNumberIn("").valueOr(-1), 0);
    EXPECT_EQ(trackNumberIn("Track").valueOr(-1), 0);
    EXPECT_EQ(trackNumberIn("Track ").valueOr(-1), 0);
    EXPECT_EQ(trackNumberIn("Tracks of mine.wav").valueOr(-1), 0);
    EXPECT_EQ(trackNumberIn("Track\xc3\xa4\xc3").valueOr(-1), 0);
}

TEST(TrackLine, ReadsTheNumberOfAFileThatIsNamedLikeATrack) {
    EXPECT_EQ(trackNumberIn("Track7.wav").valueOr(-1), 7);
}

TEST(TrackLine, FailsForANumberBeyondThirtyTwoBits) {
    EXPECT_EQ(trackNumberIn("Track9e9.wav").error().number, ErrorNumber::overflow);
}

} // namespace
} // namespace sonarith
