// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/cue_words.h"

#include <gmock/gmock.h>

namespace sonarith::disc {
namespace {

TEST(CueWords, ModesHaveAKindAndASectorSize) {
    EXPECT_EQ(cueTrackMode("audio")->kind, TrackKind::audio);
    EXPECT_EQ(cueTrackMode("AUDIO")->sectorBytes, 2352);
    EXPECT_EQ(cueTrackMode("Mode1/2048")->kind, TrackKind::data);
    EXPECT_EQ(cueTrackMode("MODE1/2048")->sectorBytes, 2048);
    EXPECT_EQ(cueTrackMode("MODE2/2336")->sectorBytes, 2336);
    EXPECT_EQ(cueTrackMode("MODE2/2352")->sectorBytes, 2352);
}

TEST(CueWords, AnUnsupportedModeIsNotFound) {
    EXPECT_FALSE(cueTrackMode("CDG").has_value());
    EXPECT_FALSE(cueTrackMode("AUDI").has_value());
    EXPECT_FALSE(cueTrackMode("").has_value());
}

TEST(CueWords, ASupportedFileTypeHasAFormatAndAnyOtherTypeHasNone) {
    EXPECT_EQ(cueFileFormat("binary"), ImageFormat::littleEndian);
    EXPECT_EQ(cueFileFormat("Motorola"), ImageFormat::bigEndian);
    EXPECT_EQ(cueFileFormat("WAVE"), ImageFormat::wave);
    EXPECT_FALSE(cueFileFormat("MP3").has_value());
}

TEST(CueWords, KeywordsThatOnlyDescribeADiscOrATrackAreRecognised) {
    EXPECT_TRUE(isCueDescription("title"));
    EXPECT_TRUE(isCueDescription("FLAGS"));
    EXPECT_FALSE(isCueDescription("INDEX"));
}

} // namespace
} // namespace sonarith::disc
