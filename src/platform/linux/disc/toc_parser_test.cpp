// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/toc_parser.h"

#include <gmock/gmock.h>

#include <string>

#include "platform/linux/disc/sheet_text.h"

namespace sonarith::disc {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;
using ::testing::StartsWith;

ImageLayout acceptedToc(std::string_view text) {
    auto layout = parseToc("disc.toc", text);
    EXPECT_TRUE(layout.ok()) << layout.error().text;
    return layout.valueOr({});
}

std::string refusedToc(std::string_view text) {
    const auto layout = parseToc("disc.toc", text);
    EXPECT_FALSE(layout.ok()) << text;
    return layout.ok() ? std::string() : layout.error().text;
}

Segment soundFrames(std::size_t file, std::int64_t fromFrame, std::int64_t frames) {
    return {SegmentKind::sound, file, fromFrame * 4, frames, bytesPerSector, 1};
}
Segment silentFrames(std::int64_t frames) {
    return {.frames = frames};
}

TEST(TocParser, ReadsFilesWithStartAndLength) {
    const auto layout = acceptedToc("CD_DA\nTRACK AUDIO\nFILE \"a.bin\" 0 00:04:00\n"
                                    "TRACK AUDIO\nAUDIOFILE \"a.bin\" 00:04:00 1000\n"
                                    "TRACK AUDIO\nFILE \"b.wav\" 44100\n");
    EXPECT_THAT(layout.files, ElementsAre(LayoutFile{"a.bin", ImageFormat::bigEndian, 3},
                                          LayoutFile{"b.wav", ImageFormat::wave, 7}));
    ASSERT_THAT(layout.tracks, SizeIs(3));
    EXPECT_THAT(layout.tracks[0].segments, ElementsAre(soundFrames(0, 0, 300 * 588)));
    EXPECT_THAT(layout.tracks[1].segments, ElementsAre(soundFrames(0, 300 * 588, 1000)));
    EXPECT_THAT(layout.tracks[2].segments, ElementsAre(soundFrames(1, 44100, toFileEnd)));
}

TEST(TocParser, ALengthOfZeroMeansTheRestOfTheFile) {
    const auto layout = acceptedToc("TRACK AUDIO\nSILENCE 588\nFILE \"a.wav\" 588 0\n"
                                    "TRACK AUDIO\nFILE \"b.wav\" 0 00:00:00\n");
    EXPECT_THAT(layout.tracks[0].segments,
                ElementsAre(silentFrames(588), soundFrames(0, 588, toFileEnd)));
    EXPECT_THAT(layout.tracks[1].segments, ElementsAre(soundFrames(1, 0, toFileEnd)));
}

TEST(TocParser, AppliesSwapAndOffsetToARawFileAndRefusesThemForAWavFile) {
    const auto layout = acceptedToc("TRACK AUDIO\nFILE \"a.raw\" SWAP #44 588 588\n"
                                    "FILE \"B.WAV\" 0 588\n");
    EXPECT_EQ(layout.files[0].format, ImageFormat::littleEndian);
    EXPECT_EQ(layout.files[1].format, ImageFormat::wave);
    EXPECT_EQ(layout.tracks[0].segments[0].offset, 44 + 588 * 4);
    EXPECT_THAT(refusedToc("TRACK AUDIO\nFILE \"a.wav\" SWAP 0 588\n"), HasSubstr("byte order"));
    EXPECT_THAT(refusedToc("TRACK AUDIO\nFILE \"a.wav\" #44 0 588\n"), HasSubstr("byte order"));
}

TEST(TocParser, ALengthOfSilenceIsANumberOfFramesOrATime) {
    const auto layout = acceptedToc("TRACK AUDIO\nSILENCE 100\nZERO 00:01:00\nSILENCE 0\n"
                                    "FILE \"a.bin\" 0\n");
    EXPECT_THAT(layout.tracks[0].segments,
                ElementsAre(silentFrames(100), silentFrames(44100), soundFrames(0, 0, toFileEnd)));
}

TEST(TocParser, ContentBeforeAStartBelongsToThePrecedingTrackIfOneExists) {
    const auto layout = acceptedToc("TRACK AUDIO\nSILENCE 00:02:00\nSTART\nFILE \"a.bin\" 0 588\n"
                                    "TRACK AUDIO\nSILENCE 00:02:00\nSTART\nFILE \"a.bin\" 588 588\n"
                                    "TRACK AUDIO\nFILE \"a.bin\" 1176 1764\nSTART 00:00:01\n");
    EXPECT_THAT(layout.tracks[0].segments,
                ElementsAre(soundFrames(0, 0, 588), silentFrames(150 * 588)));
    EXPECT_THAT(layout.tracks[1].segments,
                ElementsAre(soundFrames(0, 588, 588), soundFrames(0, 1176, 588)));
    EXPECT_THAT(layout.tracks[2].segments, ElementsAre(soundFrames(0, 1764, 1176)));
}

TEST(TocParser, APregapIsSilenceAtTheEndOfThePrecedingTrackIfOneExists) {
    const auto layout = acceptedToc("TRACK AUDIO\nPREGAP 00:02:00\nFILE \"a.bin\" 0 588\n"
                                    "TRACK AUDIO\nPREGAP 00:02:00\nFILE \"a.bin\" 588 588\n");
    EXPECT_THAT(layout.tracks[0].segments,
                ElementsAre(soundFrames(0, 0, 588), silentFrames(150 * 588)));
    EXPECT_THAT(layout.tracks[1].segments, ElementsAre(soundFrames(0, 588, 588)));
}

TEST(TocParser, ALengthOfDataIsANumberOfBytesOrATime) {
    const auto layout = acceptedToc("CD_ROM_XA\nTRACK AUDIO\nFILE \"a.bin\" 0 588\n"
                                    "TRACK MODE2_FORM1\nZERO MODE2_FORM1 00:02:00\nSTART\n"
                                    "DATAFILE \"d.iso\" #16 4097\nZERO 2048\n"
                                    "TRACK MODE1_RAW\nDATAFILE \"e.iso\"\n");
    EXPECT_THAT(layout.tracks[0].segments, ElementsAre(soundFrames(0, 0, 588)))
        << "the pause before the data track must be left out";
    EXPECT_THAT(layout.tracks[1].segments,
                ElementsAre(Segment{SegmentKind::data, 1, 16, 3 * 588, 2048, 588, 2047},
                            Segment{SegmentKind::silence, 0, 0, 588, 2048}));
    EXPECT_EQ(layout.tracks[2].segments[0].frames, toFileEnd);
    EXPECT_EQ(layout.tracks[2].segments[0].sectorBytes, 2352);
}

TEST(TocParser, SkipsCdTextAndCodesAndFlagsAndComments) {
    const auto layout = acceptedToc(
        "// made by hand\nCATALOG \"1234567890123\"\ncd_da\n"
        "CD_TEXT { LANGUAGE_MAP { 0 : EN }\n LANGUAGE 0 { TITLE \"} {\" \n"
        "  SIZE_INFO { 0, 1, 2 } } }\n"
        "track audio // one\nNO COPY\nCOPY\nNO PRE_EMPHASIS\nTWO_CHANNEL_AUDIO\n"
        "ISRC \"ABCDE1234567\"\nCD_TEXT { LANGUAGE 0 { TITLE \"x\" } }\nfile \"a.bin\" 0 1764\n"
        "INDEX 00:00:01\nINDEX 00:00:02\n");
    ASSERT_THAT(layout.tracks, SizeIs(1));
    EXPECT_THAT(layout.tracks[0].segments, ElementsAre(soundFrames(0, 0, 1764)));
    EXPECT_EQ(layout.tracks[0].line, 7);
}

TEST(TocParser, RefusesTheHundredthTrack) {
    std::string text = "CD_DA\n";
    for (int i = 0; i < 99; ++i) {
        text += "TRACK AUDIO\nSILENCE 00:01:00\n";
    }
    EXPECT_THAT(acceptedToc(text).tracks, SizeIs(99));
    for (int i = 0; i < 5000; ++i) {
        text += "TRACK AUDIO\nSILENCE 00:01:00\n";
    }
    EXPECT_THAT(refusedToc(text), StartsWith("disc.toc, line 200: this is track 100"));
}

TEST(TocParser, RefusesTimesOutOfRangeOrOutOfOrder) {
    EXPECT_THAT(refusedToc("TRACK AUDIO\nSILENCE 00:61:00\n"),
                AllOf(StartsWith("disc.toc, line 2: "), HasSubstr("seconds go up to 59")));
    EXPECT_THAT(refusedToc("TRACK AUDIO\nSILENCE 00:04:00\nINDEX 00:02:00\nINDEX 00:01:00\n"),
                AllOf(StartsWith("disc.toc, line 4: "), HasSubstr("out of order")));
    EXPECT_THAT(refusedToc("TRACK AUDIO\nSILENCE 00:04:00\nSTART 00:05:00\n"),
                StartsWith("disc.toc, line 3: START 00:05:00 is beyond"));
    EXPECT_THAT(refusedToc("TRACK AUDIO\nSILENCE 00:04:00\nINDEX 00:04:00\n"),
                HasSubstr("is beyond the end of the track"));
}

TEST(TocParser, RefusesNumbersThatAreTooLarge) {
    EXPECT_THAT(refusedToc("TRACK AUDIO\nSILENCE 99999999999999999999\n"), HasSubstr("too large"));
    EXPECT_THAT(refusedToc("TRACK AUDIO\nSILENCE 264600001\n"), HasSubstr("too large"));
    EXPECT_THAT(refusedToc("TRACK AUDIO\nFILE \"a\" 9223372036854775807\n"),
                HasSubstr("too large"));
    EXPECT_THAT(refusedToc("TRACK AUDIO\nFILE \"a\" #9223372036854775807 0\n"),
                HasSubstr("too large"));
    EXPECT_THAT(refusedToc("TRACK MODE1\nDATAFILE \"a\" 18446744073709551616\n"),
                HasSubstr("too large"));
}

TEST(TocParser, RefusesIncompleteMisplacedAndUnknownStatements) {
    EXPECT_THAT(refusedToc(""), HasSubstr("no TRACK"));
    EXPECT_THAT(refusedToc("CD_DA\n"), HasSubstr("no TRACK"));
    EXPECT_THAT(refusedToc("FILE \"a\" 0\n"), HasSubstr("precede the first TRACK"));
    EXPECT_THAT(refusedToc("TRACK AUDIO\n"), HasSubstr("no content"));
    EXPECT_THAT(refusedToc("TRACK\n"), HasSubstr("mode"));
    EXPECT_THAT(refusedToc("TRACK AUDIO RW\n"), HasSubstr("subchannel"));
    EXPECT_THAT(refusedToc("TRACK AUDIO\nFILE a 0\n"), HasSubstr("in quotation marks"));
    EXPECT_THAT(refusedToc("TRACK AUDIO\nFILE \"a\n"), HasSubstr("closing quotation mark"));
    EXPECT_THAT(refusedToc("TRACK AUDIO\nFILE \"a\"\n"), HasSubstr("where a length is expected"));
    EXPECT_THAT(refusedToc("TRACK AUDIO\nDATAFILE \"a\"\n"), HasSubstr("in an audio track"));
    EXPECT_THAT(refusedToc("TRACK MODE1\nFILE \"a\" 0\n"), HasSubstr("in a data track"));
    EXPECT_THAT(refusedToc("TRACK AUDIO\nSILENCE 1\nPREGAP 00:02:00\n"),
                HasSubstr("follows content"));
    EXPECT_THAT(refusedToc("TRACK AUDIO\nSTART\nSTART\nSILENCE 1\n"), HasSubstr("already"));
    EXPECT_THAT(refusedToc("TRACK AUDIO\nISRC ABC\n"), HasSubstr("ISRC needs a text"));
    EXPECT_THAT(refusedToc("TRACK AUDIO\nNO TWO_CHANNEL_AUDIO\n"),
                HasSubstr("the word \"TWO_CHANNEL_AUDIO\" must not follow NO"));
    EXPECT_THAT(refusedToc("TRACK AUDIO\nFIFO \"a\" 5\n"), HasSubstr("\"FIFO\" is not a keyword"));
    EXPECT_THAT(refusedToc("CD_DA\nCD_TEXT { { }\nTRACK AUDIO\n"),
                StartsWith("disc.toc, line 2: the block that begins here"));
    EXPECT_THAT(refusedToc("CD_DA }\n"), HasSubstr("where a keyword is expected"));
}

TEST(TocParser, RefusesPathsOutsideTheSheetsFolderOrWithNulEvenIfWrittenWithEscapes) {
    EXPECT_THAT(refusedToc("TRACK AUDIO\nFILE \"../a\" 0\n"),
                HasSubstr("contains the folder \"..\""));
    EXPECT_THAT(refusedToc("TRACK AUDIO\nFILE \"\\056./a\" 0\n"),
                HasSubstr("contains the folder \"..\""));
    EXPECT_THAT(refusedToc("TRACK AUDIO\nFILE \"/a\" 0\n"), HasSubstr("absolute path"));
    EXPECT_THAT(refusedToc("TRACK AUDIO\nFILE \"a\\000b\" 0\n"), HasSubstr("NUL"));
}

TEST(TocParser, AppliesAStartStatementAfterAHundredThousandSegments) {
    // More than 100000 segments of one frame each precede START 00:02:00, which cuts the first
    // 88200 of them (2 s) off the track. A step of quadratic time would make this test take
    // minutes.
    std::string text = "TRACK AUDIO\n";
    while (text.size() + 32 < maxSheetBytes) {
        text += "SILENCE 1\n";
    }
    text += "START 00:02:00\n";
    const auto layout = acceptedToc(text);
    ASSERT_THAT(layout.tracks, SizeIs(1));
    EXPECT_EQ(statedFrames(layout.tracks[0].segments),
              static_cast<std::int64_t>((text.size() - 27) / 10) - 150 * 588);
}

} // namespace
} // namespace sonarith::disc
