// SPDX-License-Identifier: GPL-3.0-or-later
#include "extraction/track_line.h"

#include <gtest/gtest.h>

namespace sonarith {
namespace {

TEST(TrackLine, RightAlignsTheNumberInTwoCharacters) {
    EXPECT_EQ(trackLine(1, "00:03:05"), "Track  1 - 00:03:05");
    EXPECT_EQ(trackLine(12, "00:03:05"), "Track 12 - 00:03:05");
}

TEST(TrackLine, DropsWhatDoesNotFitTheField) {
    EXPECT_EQ(trackLine(123, "x"), "Track 12 - x");
}

TEST(TrackLine, KeepsTheDevicesTextAsItIs) {
    EXPECT_EQ(trackLine(2, ""), "Track  2 - ");
    EXPECT_EQ(trackLine(2, "3m 5s"), "Track  2 - 3m 5s");
}

TEST(TrackLine, IsReadBackFromThreeCharactersAtPositionSix) {
    EXPECT_EQ(trackNumberIn("Track  1 - 00:03:05"), 1);
    EXPECT_EQ(trackNumberIn("Track 12 - 00:03:05"), 12);
    // The number's field is three wide for a reader.
    EXPECT_EQ(trackNumberIn("Track123 - 00:03:05"), 123);
    EXPECT_EQ(trackNumberIn("Track1234"), 123);
}

TEST(TrackLine, ReadsZeroWhereNoNumberStands) {
    EXPECT_EQ(trackNumberIn(""), 0);
    EXPECT_EQ(trackNumberIn("Track"), 0);
    EXPECT_EQ(trackNumberIn("Track "), 0);
    EXPECT_EQ(trackNumberIn("Tracks of mine.wav"), 0);
    EXPECT_EQ(trackNumberIn("Track\xc3\xa4\xc3"), 0);
}

TEST(TrackLine, ReadsTheNumberOfAFileThatIsNamedLikeATrack) {
    EXPECT_EQ(trackNumberIn("Track7.wav"), 7);
}

} // namespace
} // namespace sonarith
