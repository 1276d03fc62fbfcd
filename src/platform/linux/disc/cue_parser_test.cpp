// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/cue_parser.h"

#include <gmock/gmock.h>

#include <string>

#include "platform/linux/disc/sheet_text.h"

namespace sonarith::disc {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

ImageLayout accepted(std::string_view text) {
    auto layout = parseCue("disc.cue", text);
    EXPECT_TRUE(layout.ok()) << layout.error().text;
    return layout.valueOr({});
}

std::string refused(std::string_view text) {
    const auto layout = parseCue("disc.cue", text);
    EXPECT_FALSE(layout.ok()) << text;
    return layout.ok() ? std::string() : layout.error().text;
}

Segment soundOf(std::size_t file, std::int64_t fromSector, std::int64_t sectors) {
    return {SegmentKind::sound, file, fromSector * bytesPerSector,
            sectors == toFileEnd ? toFileEnd : sectors * framesPerSector};
}
Segment silenceOf(std::int64_t sectors) {
    return {.frames = sectors * framesPerSector};
}

const std::string oneTrack = "FILE \"a.bin\" BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n";

TEST(CueParser, ReadsTracksOfOneFile) {
    const auto layout = accepted("FILE \"a.bin\" BINARY\n"
                                 "  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n"
                                 "  TRACK 02 AUDIO\n    INDEX 01 00:04:00\n");
    EXPECT_THAT(layout.files, ElementsAre(LayoutFile{"a.bin", ImageFormat::littleEndian, 1}));
    ASSERT_THAT(layout.tracks, SizeIs(2));
    EXPECT_THAT(layout.tracks[0].segments, ElementsAre(soundOf(0, 0, 300)));
    EXPECT_THAT(layout.tracks[1].segments, ElementsAre(soundOf(0, 300, toFileEnd)));
    EXPECT_EQ(layout.tracks[1].line, 4);
}

TEST(CueParser, AStoredPauseBelongsToThePreviousTrack) {
    const auto layout = accepted("FILE a.bin BINARY\n"
                                 "TRACK 01 AUDIO\nINDEX 00 00:00:00\nINDEX 01 00:02:00\n"
                                 "TRACK 02 AUDIO\nINDEX 00 00:04:00\nINDEX 01 00:06:00\n");
    // Track 1 has no previous track, so its own pause is not on the time line.
    EXPECT_THAT(layout.tracks[0].segments, ElementsAre(soundOf(0, 150, 150), soundOf(0, 300, 150)));
    EXPECT_THAT(layout.tracks[1].segments, ElementsAre(soundOf(0, 450, toFileEnd)));
}

TEST(CueParser, APregapIsSilenceBeforeTheStoredPause) {
    const auto layout =
        accepted("FILE a.bin BINARY\n"
                 "TRACK 01 AUDIO\nPREGAP 00:02:00\nINDEX 01 00:00:00\n"
                 "TRACK 02 AUDIO\nPREGAP 00:02:00\nINDEX 00 00:04:00\nINDEX 01 00:05:00\n");
    EXPECT_THAT(layout.tracks[0].segments,
                ElementsAre(soundOf(0, 0, 300), silenceOf(150), soundOf(0, 300, 75)));
    EXPECT_THAT(layout.tracks[1].segments, ElementsAre(soundOf(0, 375, toFileEnd)));
}

TEST(CueParser, APostgapIsSilenceAtTheEndOfItsTrack) {
    const auto layout = accepted("FILE a.bin BINARY\n"
                                 "TRACK 01 AUDIO\nINDEX 01 00:00:00\nPOSTGAP 00:01:00\n"
                                 "TRACK 02 AUDIO\nPREGAP 00:00:10\nINDEX 01 00:04:00\n"
                                 "POSTGAP 00:00:05\n");
    EXPECT_THAT(layout.tracks[0].segments,
                ElementsAre(soundOf(0, 0, 300), silenceOf(75), silenceOf(10)));
    EXPECT_THAT(layout.tracks[1].segments, ElementsAre(soundOf(0, 300, toFileEnd), silenceOf(5)));
}

TEST(CueParser, EachTrackCanHaveItsOwnFile) {
    const auto layout = accepted("FILE 1.wav WAVE\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                                 "FILE 2.bin MOTOROLA\nTRACK 02 AUDIO\nINDEX 00 00:00:00\n"
                                 "INDEX 01 00:02:00\n");
    EXPECT_THAT(layout.files, ElementsAre(LayoutFile{"1.wav", ImageFormat::wave, 1},
                                          LayoutFile{"2.bin", ImageFormat::bigEndian, 4}));
    EXPECT_THAT(layout.tracks[0].segments,
                ElementsAre(soundOf(0, 0, toFileEnd), soundOf(1, 0, 150)));
    EXPECT_THAT(layout.tracks[1].segments, ElementsAre(soundOf(1, 150, toFileEnd)));
}

TEST(CueParser, APauseCanBeAtTheEndOfThePreviousTracksFile) {
    const auto layout = accepted("FILE 1.wav WAVE\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                                 "TRACK 02 AUDIO\nINDEX 00 00:04:00\n"
                                 "FILE 2.wav WAVE\nINDEX 01 00:00:00\n");
    EXPECT_THAT(layout.tracks[0].segments,
                ElementsAre(soundOf(0, 0, 300), soundOf(0, 300, toFileEnd)));
    EXPECT_THAT(layout.tracks[1].segments, ElementsAre(soundOf(1, 0, toFileEnd)));
}

TEST(CueParser, AFileThatIsNamedTwiceIsListedOnce) {
    const auto layout = accepted("FILE a.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                                 "FILE a.bin BINARY\nTRACK 02 AUDIO\nINDEX 01 00:01:00\n");
    EXPECT_THAT(layout.files, SizeIs(1));
    EXPECT_THAT(layout.tracks[0].segments, ElementsAre(soundOf(0, 0, 75)));
}

TEST(CueParser, AnIndexAfterIndex01InTheSameFileDoesNotSplitTheSound) {
    const auto layout = accepted(oneTrack + "INDEX 02 00:01:00\nINDEX 03 00:02:00\n"
                                            "TRACK 02 AUDIO\nINDEX 01 00:03:00\n");
    EXPECT_THAT(layout.tracks[0].segments, ElementsAre(soundOf(0, 0, 225)));
}

TEST(CueParser, ATrackCanContinueInAnotherFileFromIndex02On) {
    const auto layout = accepted(oneTrack + "FILE b.bin BINARY\nINDEX 02 00:00:00\nTRACK 02 AUDIO\n"
                                            "INDEX 01 00:03:00\n");
    EXPECT_THAT(layout.tracks[0].segments,
                ElementsAre(soundOf(0, 0, toFileEnd), soundOf(1, 0, 225)));
}

TEST(CueParser, DataSectorsHaveTheSizeThatTheirModeStates) {
    const auto layout = accepted("FILE a.bin BINARY\nTRACK 01 MODE1/2048\nINDEX 01 00:00:00\n"
                                 "TRACK 02 AUDIO\nINDEX 00 00:04:00\nINDEX 01 00:06:00\n");
    const Segment data{SegmentKind::data, 0, 0, 300 * framesPerSector, 2048};
    const std::int64_t pauseAt = 300 * 2048;
    const Segment pause{SegmentKind::sound, 0, pauseAt, 150 * framesPerSector};
    const Segment sound{SegmentKind::sound, 0, pauseAt + 150 * bytesPerSector, toFileEnd};
    EXPECT_EQ(layout.tracks[0].kind, TrackKind::data);
    EXPECT_THAT(layout.tracks[0].segments, ElementsAre(data, pause));
    EXPECT_THAT(layout.tracks[1].segments, ElementsAre(sound));
}

TEST(CueParser, TheAudioOfAnEnhancedDiscEndsAtIndex00OfItsDataTrack) {
    const auto layout = accepted("FILE a.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                                 "REM SESSION 02\nTRACK 02 MODE2/2352\nPREGAP 00:10:00\n"
                                 "INDEX 00 00:04:00\nINDEX 01 00:06:00\n");
    EXPECT_THAT(layout.tracks[0].segments, ElementsAre(soundOf(0, 0, 300)));
    EXPECT_EQ(layout.tracks[1].kind, TrackKind::data);
    EXPECT_THAT(layout.tracks[1].segments,
                ElementsAre(Segment{SegmentKind::data, 0, 450 * 2352, toFileEnd}));
}

TEST(CueParser, TheGapBeforeASecondSessionIsNotOnTheTimeLine) {
    const auto layout = accepted("REM SESSION 01\n" + oneTrack +
                                 "rem session 02\nTRACK 02 AUDIO\n"
                                 "INDEX 00 00:04:00\nINDEX 01 00:06:00\n"
                                 "TRACK 03 AUDIO\nINDEX 00 00:08:00\nINDEX 01 00:09:00\n");
    EXPECT_THAT(layout.tracks[0].segments, ElementsAre(soundOf(0, 0, 300)));
    EXPECT_THAT(layout.tracks[1].segments, ElementsAre(soundOf(0, 450, 150), soundOf(0, 600, 75)));
}

TEST(CueParser, AcceptsLowerCaseAndAByteOrderMarkAndCrLfLineEnds) {
    const auto layout = accepted("\xEF\xBB\xBF"
                                 "file \"a.bin\" binary\r\n\ttrack 1 audio\r\n"
                                 "\t\tindex 1 0:0:0\r\n\r\n");
    EXPECT_THAT(layout.files, ElementsAre(LayoutFile{"a.bin", ImageFormat::littleEndian, 1}));
    EXPECT_THAT(layout.tracks, SizeIs(1));
}

TEST(CueParser, AcceptsNamesWithAndWithoutQuotationMarks) {
    const auto nameIn = [](std::string_view line) {
        return accepted(std::string(line) + "\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n").files[0].name;
    };
    EXPECT_EQ(nameIn("FILE \"My Songs (live).bin\" BINARY"), "My Songs (live).bin");
    EXPECT_EQ(nameIn("FILE My Songs.bin  BINARY  "), "My Songs.bin");
    EXPECT_EQ(nameIn("FILE \"Größe 音.wav\"\tWAVE"), "Größe 音.wav");
    EXPECT_EQ(nameIn("FILE \" a \"WAVE"), " a ");
}

TEST(CueParser, SkipsDescriptionsAndComments) {
    const auto layout = accepted("REM GENRE Rock\nREM\nREM SESSION x\nCATALOG 1234567890123\n"
                                 "CDTEXTFILE \"a.cdt\"\nPERFORMER \"P\"\nTITLE \"A \"\" title\"\n"
                                 "SONGWRITER s\nFILE a.bin BINARY\nTRACK 01 AUDIO\nTITLE \"x\n"
                                 "FLAGS DCP PRE\nISRC ABCDE1234567\nINDEX 01 00:00:00\n");
    EXPECT_THAT(layout.tracks, SizeIs(1));
}

TEST(CueParser, AcceptsAtMostNinetyNineTracks) {
    std::string text = "FILE a.bin BINARY\n";
    for (int i = 1; i <= 99; ++i) {
        text += "TRACK " + std::to_string(i) + " AUDIO\nINDEX 01 " + msfText(i * 300) + "\n";
    }
    EXPECT_THAT(accepted(text).tracks, SizeIs(99));
    text += "TRACK 100 AUDIO\nINDEX 01 60:00:00\n";
    EXPECT_THAT(refused(text),
                AllOf(StartsWith("disc.cue, line 200: "), HasSubstr("between 01 and 99")));
}

TEST(CueParser, ReportsTheLineOfTrack100IfASheetHas9000Tracks) {
    std::string text = "FILE a.bin BINARY\n";
    for (int i = 1; i <= 9000; ++i) {
        text += "TRACK " + std::to_string(i) + " AUDIO\nINDEX 01 " + msfText(i) + "\n";
    }
    EXPECT_THAT(refused(text), StartsWith("disc.cue, line 200: "));
}

TEST(CueParser, RefusesTimesOutOfOrder) {
    EXPECT_EQ(refused(oneTrack + "TRACK 02 AUDIO\nINDEX 01 00:09:00\n"
                                 "TRACK 03 AUDIO\nINDEX 01 00:08:74\n"),
              "disc.cue, line 7: the times are out of order: 00:08:74 follows 00:09:00 of the "
              "same file");
}

TEST(CueParser, RefusesATrackWithoutLength) {
    EXPECT_THAT(refused(oneTrack + "TRACK 02 AUDIO\nINDEX 01 00:00:00\n"),
                AllOf(StartsWith("disc.cue, line 2: "), HasSubstr("no length")));
}

TEST(CueParser, RefusesTimesOutOfRange) {
    EXPECT_THAT(refused("FILE a.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:60:00\n"),
                AllOf(StartsWith("disc.cue, line 3: "), HasSubstr("seconds go up to 59")));
    EXPECT_THAT(refused(oneTrack + "POSTGAP 99999999999999999999:00:00\n"),
                HasSubstr("minutes go up to 99"));
}

TEST(CueParser, ATruncatedSheetIsRefusedIfItsFirstTrackIsIncomplete) {
    const std::string whole = "FILE \"a.bin\" BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                              "TRACK 02 AUDIO\nINDEX 00 00:04:00\nINDEX 01 00:06:00";
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const auto layout = parseCue("disc.cue", whole.substr(0, length));
        if (layout.ok()) {
            EXPECT_GE(length, whole.find("TRACK 02") - 2)
                << "a sheet must be refused if its track 1 is incomplete";
        } else {
            EXPECT_THAT(layout.error().text, StartsWith("disc.cue"));
        }
    }
}

TEST(CueParser, ReportsMissingAndTruncatedStatements) {
    EXPECT_THAT(refused(""), HasSubstr("no TRACK"));
    EXPECT_THAT(refused("FILE \"a.bin\" BINARY\n\nREM\n"),
                HasSubstr("line 1: no INDEX follows the file"));
    EXPECT_THAT(refused("FILE \"a.bin BINARY\n"), HasSubstr("closing quotation mark"));
    EXPECT_THAT(refused("FILE \"a.bin\"\n"), HasSubstr("BINARY, MOTOROLA or WAVE"));
    EXPECT_THAT(refused("FILE a.bin\n"), HasSubstr("a name and a type"));
    EXPECT_THAT(refused("FILE\n"), HasSubstr("a name and a type"));
    EXPECT_THAT(refused(oneTrack + "TRACK 02 AUDIO\n"),
                StartsWith("disc.cue, line 4: TRACK 02 has no INDEX 01"));
    EXPECT_THAT(refused(oneTrack + "TRACK 02 AUD\n"), HasSubstr("mode \"AUD\" is not supported"));
    EXPECT_THAT(refused(oneTrack + "TRACK 02 AUDIO\nINDEX 01 00:0"), HasSubstr("mm:ss:ff"));
    EXPECT_THAT(refused(oneTrack + "TRA"), HasSubstr("the word \"TRA\" is not a keyword"));
}

TEST(CueParser, ReportsMisplacedStatements) {
    EXPECT_THAT(refused("TRACK 01 AUDIO\n"), HasSubstr("precedes the first FILE"));
    EXPECT_THAT(refused("FILE a BINARY\nINDEX 01 00:00:00\n"),
                HasSubstr("precedes the first TRACK"));
    EXPECT_THAT(refused("FILE a BINARY\nPREGAP 00:02:00\n"), HasSubstr("precedes the first TRACK"));
    EXPECT_THAT(refused("FILE a BINARY\nTRACK 02 AUDIO\n"), HasSubstr("where track 1 is expected"));
    EXPECT_THAT(refused(oneTrack + "PREGAP 00:02:00\n"), HasSubstr("PREGAP follows an INDEX"));
    EXPECT_THAT(refused(oneTrack + "INDEX 01 00:01:00\n"), HasSubstr("follows INDEX 1"));
    EXPECT_THAT(refused(oneTrack + "POSTGAP 00:02:00\nPOSTGAP 00:02:00\n"), HasSubstr("already"));
    EXPECT_THAT(refused(oneTrack + "POSTGAP 00:02:00\nINDEX 02 00:03:00\n"), HasSubstr("POSTGAP"));
    EXPECT_THAT(refused("FILE a BINARY\nTRACK 01 AUDIO\nPOSTGAP 00:02:00\n"),
                HasSubstr("POSTGAP precedes INDEX 01"));
    EXPECT_THAT(refused("FILE a BINARY\nTRACK 01 AUDIO\nINDEX 00 00:00:00\nINDEX 02 00:02:00\n"),
                HasSubstr("has no INDEX 01"));
    EXPECT_THAT(refused("FILE a BINARY\nFILE b BINARY\n"),
                HasSubstr("line 1: no INDEX follows the file \"a\""));
}

TEST(CueParser, RefusesUnknownFileTypesAndDataInAWaveFile) {
    EXPECT_THAT(refused("FILE a.mp3 MP3\n"), HasSubstr("the type of the file is \"MP3\""));
    EXPECT_THAT(refused("FILE \"a.bin\" BINARY x\n"),
                HasSubstr("unexpected text \"x\" after the type of the file"));
    EXPECT_THAT(refused("FILE a.bin BINARY\nTRACK 01 AUDIO x\n"),
                HasSubstr("unexpected text \"x\" after the track's mode"));
    EXPECT_THAT(refused("FILE a.wav WAVE\nTRACK 01 MODE1/2352\nINDEX 01 00:00:00\n"),
                HasSubstr("data track cannot be in a WAVE file"));
}

TEST(CueParser, RefusesPathsOutsideTheSheetsFolder) {
    EXPECT_THAT(refused("FILE \"../a.bin\" BINARY\n"),
                AllOf(StartsWith("disc.cue, line 1: "), HasSubstr("contains the folder \"..\"")));
    EXPECT_THAT(refused("FILE \"/etc/passwd\" BINARY\n"), HasSubstr("absolute path"));
    EXPECT_THAT(refused("FILE \"C:\\Music\\a.bin\" BINARY\n"), HasSubstr("absolute path"));
}

TEST(CueParser, RefusesTooLongSheetsTooLongLinesAndNulBytes) {
    EXPECT_THAT(refused(oneTrack + std::string(maxSheetBytes, '\n')), HasSubstr("1 MiB"));
    EXPECT_THAT(refused(oneTrack + "REM " + std::string(maxLineBytes, 'x')),
                StartsWith("disc.cue, line 4: the line is longer"));
    EXPECT_THAT(refused(std::string("\xFF\xFE"
                                    "F\0I\0",
                                    6)),
                HasSubstr("UTF-8"));
}

} // namespace
} // namespace sonarith::disc
