// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/image_timeline.h"

#include <gmock/gmock.h>

#include "platform/linux/disc/cue_parser.h"
#include "platform/linux/disc/toc_parser.h"

namespace sonarith::disc {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

const std::string threeTrackSheet = "FILE a.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                                    "TRACK 02 AUDIO\nINDEX 01 00:04:00\n"
                                    "TRACK 03 AUDIO\nINDEX 01 00:08:00\n";

Result<ImageTimeline> timelineOfCue(const std::string& text, std::vector<std::int64_t> fileBytes) {
    return layOnLine("disc.cue", parseCue("disc.cue", text).value(), fileBytes);
}
Result<ImageTimeline> timelineOfToc(const std::string& text, std::vector<std::int64_t> fileBytes) {
    return layOnLine("disc.toc", parseToc("disc.toc", text).value(), fileBytes);
}

std::vector<std::int64_t> lengthsOf(const ImageTimeline& line) {
    std::vector<std::int64_t> lengths;
    for (const Track& track : line.table.tracks) {
        lengths.push_back(track.sectors);
    }
    return lengths;
}

std::int64_t soundFrames(const ImageTimeline& line) {
    std::int64_t frames = 0;
    for (const SoundStretch& stretch : line.sound) {
        frames += stretch.frames;
    }
    return frames;
}

TEST(Timeline, TheLastTrackEndsWithTheLastWholeSectorOfTheFile) {
    const auto line = timelineOfCue(threeTrackSheet, {1000 * 2352 + 2351});
    ASSERT_TRUE(line.ok());
    EXPECT_THAT(lengthsOf(line.value()), ElementsAre(300, 300, 400));
    EXPECT_THAT(line.value().remark, IsEmpty());
    EXPECT_EQ(soundFrames(line.value()), 1000 * 588);
}

TEST(Timeline, TheLastSectorOfAWaveFileIsPadded) {
    const auto line = timelineOfCue("FILE 1.wav WAVE\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                                    "FILE 2.wav WAVE\nTRACK 02 AUDIO\nINDEX 01 00:00:00\n",
                                    {(300 * 588 + 1) * 4, 300 * 588 * 4});
    EXPECT_THAT(lengthsOf(line.value()), ElementsAre(301, 300));
    EXPECT_EQ(line.value().sound[0].frames, 300 * 588 + 1);
    EXPECT_EQ(line.value().sound[1].start, 301 * 588);
}

TEST(Timeline, FilesOfOneTocTrackAreJoinedAtTheExactFrame) {
    const auto line = timelineOfToc("TRACK AUDIO\nFILE \"a.bin\" 0\nFILE \"b.bin\" 0\n"
                                    "TRACK AUDIO\nSILENCE 1\n",
                                    {100 * 4, 1000 * 4 + 3});
    EXPECT_THAT(lengthsOf(line.value()), ElementsAre(2, 1));
    EXPECT_EQ(line.value().sound[1].start, 100);
    EXPECT_EQ(line.value().sound[1].frames, 1000);
}

TEST(Timeline, AStatedLengthMayEndAnywhereInASector) {
    const auto line = timelineOfToc("TRACK AUDIO\nFILE \"a.bin\" 0 1234567\n"
                                    "TRACK AUDIO\nFILE \"a.bin\" 1234567 589\nFILE \"b.bin\" 0 1\n",
                                    {(1234567 + 589) * 4, 4});
    ASSERT_TRUE(line.ok());
    EXPECT_THAT(lengthsOf(line.value()), ElementsAre(2100, 2));
    EXPECT_THAT(line.value().remark, IsEmpty());
    ASSERT_EQ(line.value().sound.size(), 3U);
    EXPECT_EQ(line.value().sound[0].frames, 1234567);
    EXPECT_EQ(line.value().sound[1].frames, 589);
    EXPECT_EQ(line.value().sound[2].start, line.value().sound[1].start + 589)
        << "there must be no gap between the two files";
    EXPECT_EQ(line.value().sound[2].frames, 1);
}

TEST(Timeline, ATrackWhoseFileIsOneByteTooShortIsTruncated) {
    const auto line = timelineOfToc("TRACK AUDIO\nFILE \"a.bin\" 0 1234567\n", {1234567 * 4 - 1});
    EXPECT_EQ(line.value().sound[0].frames, 1234567 / 588 * 588);
    EXPECT_THAT(line.value().remark, HasSubstr("track 1 is truncated"));
}

TEST(Timeline, AStatedLengthOfDataMayEndAnywhereInASector) {
    const std::string text = "TRACK AUDIO\nFILE \"a.bin\" 0 588\n"
                             "TRACK MODE1\nDATAFILE \"d.iso\" 4097\n";
    const auto whole = timelineOfToc(text, {2352, 4097});
    EXPECT_THAT(lengthsOf(whole.value()), ElementsAre(1, 3));
    EXPECT_THAT(whole.value().remark, IsEmpty());
    EXPECT_THAT(timelineOfToc(text, {2352, 4096}).value().remark,
                HasSubstr("track 2 is truncated"));
    // START makes the first two sectors (4096 bytes) the pause before track 2, so only the last
    // byte is track 2 itself. Without this byte, the whole track is missing.
    const std::string parted = text + "START 00:00:02\n";
    EXPECT_THAT(timelineOfToc(parted, {2352, 4097}).value().remark, IsEmpty());
    EXPECT_THAT(timelineOfToc(parted, {2352, 4096}).value().remark,
                HasSubstr("track 2 is missing"));
}

TEST(Timeline, ATruncatedTrackKeepsItsStatedLengthAndATrackOfUnknownLengthGetsFourSeconds) {
    const auto line = timelineOfCue(threeTrackSheet, {400 * 2352 + 100});
    ASSERT_TRUE(line.ok());
    EXPECT_THAT(lengthsOf(line.value()), ElementsAre(300, 300, 300));
    EXPECT_EQ(soundFrames(line.value()), 400 * 588);
    EXPECT_THAT(line.value().remark,
                HasSubstr("\"a.bin\" (disc.cue, line 1) is too short: track 2 is truncated and "
                          "reads as silence from 00:01:25 on; track 3 has no whole "
                          "sector in its file"));
}

TEST(Timeline, ReportsAMissingPartBeforeTheEndOfATrack) {
    const std::string text = "TRACK AUDIO\nFILE \"a.bin\" 0 1176\nFILE \"b.bin\" 0 1176\n";
    EXPECT_THAT(
        timelineOfToc(text, {2352, 4704}).value().remark,
        HasSubstr("track 1 lacks a part, which begins at 00:00:01; later parts are present"));
    EXPECT_THAT(
        timelineOfToc(text, {0, 4704}).value().remark,
        HasSubstr("track 1 lacks a part, which begins at 00:00:00; later parts are present"));
    // Here the sheet states no length for the part in a.bin, and a.bin is empty. So this part has
    // the length 0, and no silence replaces it. The remark is the same as above.
    EXPECT_THAT(
        timelineOfToc("TRACK AUDIO\nFILE \"a.bin\" 0\nFILE \"b.bin\" 0 1176\n", {0, 4704})
            .value()
            .remark,
        HasSubstr("track 1 lacks a part, which begins at 00:00:00; later parts are present"));
    EXPECT_THAT(timelineOfToc(text, {4704, 2352}).value().remark,
                HasSubstr("track 1 is truncated and reads as silence from 00:00:03 on"));
}

TEST(Timeline, CountsTheLostSectorsOfARange) {
    const ImageTimeline truncated = timelineOfCue(threeTrackSheet, {400 * 2352 + 100}).value();
    EXPECT_EQ(lostSectors(truncated, 0, 900), 500)
        << "the rest of track 2 and all of track 3 must count as lost";
    EXPECT_EQ(lostSectors(truncated, 300, 600), 200);
    EXPECT_EQ(lostSectors(truncated, 0, 400), 0);
    EXPECT_EQ(lostSectors(truncated, 399, 401), 1);
    EXPECT_EQ(lostSectors(truncated, 600, 500), 0);
    // The silence of a SILENCE statement and the padding of a.bin's last sector are intended, so
    // they do not count as lost.
    const ImageTimeline whole =
        timelineOfToc("TRACK AUDIO\nFILE \"a.bin\" 0\nTRACK AUDIO\nSILENCE 9\n", {10 * 2352 + 4})
            .value();
    EXPECT_EQ(lostSectors(whole, 0, 999), 0);
    // Of the two parts of b.bin, the first ends and the second begins within the same sector.
    // Both are missing, and this sector counts as lost only once.
    const ImageTimeline pieces =
        timelineOfToc(
            "TRACK AUDIO\nFILE \"a.bin\" 0 588\nFILE \"b.bin\" 0 300\nFILE \"b.bin\" 300 900\n",
            {2352, 0})
            .value();
    EXPECT_EQ(pieces.table.sectors(), 4);
    EXPECT_EQ(lostSectors(pieces, 0, 4), 3);
}

TEST(Timeline, ConsecutiveMissingTracksAreReportedAsOneRange) {
    const auto line =
        timelineOfToc("TRACK AUDIO\nFILE \"a.bin\" 0 588\nTRACK AUDIO\n"
                      "FILE \"a.bin\" 588 588\nTRACK AUDIO\nFILE \"a.bin\" 1176 588\n",
                      {2352});
    EXPECT_THAT(lengthsOf(line.value()), ElementsAre(1, 1, 1));
    EXPECT_THAT(line.value().remark, HasSubstr("tracks 2 to 3 are missing and read as silence"));
}

TEST(Timeline, ATrackThatBeginsAtTheEndOfItsFileKeepsItsNumber) {
    const auto line = timelineOfCue("FILE 1.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                                    "TRACK 02 AUDIO\nINDEX 01 00:00:10\n"
                                    "FILE 2.bin BINARY\nTRACK 03 AUDIO\nPREGAP 00:00:05\n"
                                    "INDEX 01 00:00:00\n",
                                    {10 * 2352, 20 * 2352});
    ASSERT_EQ(line.value().table.tracks.size(), 3U);
    EXPECT_EQ(line.value().table.tracks[2].sectors, 20);
    EXPECT_THAT(line.value().remark, HasSubstr("track 2"));
    EXPECT_THAT(line.value().remark, Not(HasSubstr("track 1")));
}

TEST(Timeline, AnEmptyPauseAtTheEndOfAFileIsNotReportedAsMissing) {
    const auto line = timelineOfCue("FILE 1.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                                    "TRACK 02 AUDIO\nINDEX 00 00:00:10\n"
                                    "FILE 2.bin BINARY\nINDEX 01 00:00:00\n",
                                    {10 * 2352, 20 * 2352});
    EXPECT_THAT(lengthsOf(line.value()), ElementsAre(10, 20));
    EXPECT_THAT(line.value().remark, IsEmpty());
}

TEST(Timeline, ADataTrackHasALengthButNoSound) {
    const auto line = timelineOfCue("FILE a.bin BINARY\nTRACK 01 MODE1/2048\nINDEX 01 00:00:00\n"
                                    "FILE b.bin BINARY\nTRACK 02 AUDIO\nINDEX 01 00:00:00\n",
                                    {100 * 2048, 2352});
    EXPECT_THAT(lengthsOf(line.value()), ElementsAre(100, 1));
    EXPECT_EQ(line.value().table.tracks[0].kind, TrackKind::data);
    EXPECT_EQ(line.value().sound.size(), 1U) << "the data track must not count as sound";
}

TEST(Timeline, ADiscWithoutAnyContentIsAnError) {
    const auto line = timelineOfCue(threeTrackSheet, {2351});
    ASSERT_FALSE(line.ok());
    EXPECT_THAT(line.error().text, HasSubstr("disc.cue, line 2: no content of the disc was found"));
    EXPECT_FALSE(timelineOfCue(threeTrackSheet, {0}).ok());
}

TEST(Timeline, ADiscOfSilenceNeedsNoFile) {
    const auto line = timelineOfToc("TRACK AUDIO\nSILENCE 00:04:00\n", {});
    ASSERT_TRUE(line.ok());
    EXPECT_THAT(lengthsOf(line.value()), ElementsAre(300));
    EXPECT_THAT(line.value().sound, IsEmpty());
}

TEST(Timeline, ADiscThatIsLongerThanPossibleIsAnError) {
    const std::int64_t mostBytes = 450000LL * 2352;
    EXPECT_EQ(timelineOfCue(threeTrackSheet, {mostBytes}).value().table.sectors(), 450000);
    EXPECT_THAT(timelineOfCue(threeTrackSheet, {mostBytes + 2352}).error().text,
                HasSubstr("disc.cue, line 6: this track makes the disc longer than 100 minutes"));
    EXPECT_FALSE(timelineOfCue(threeTrackSheet, {INT64_MAX}).ok());
}

TEST(Timeline, RefusesManyReferencesToAHugeFileWithoutOverflow) {
    std::string text = "TRACK AUDIO\n";
    for (int i = 0; i < 100; ++i) {
        text += "FILE \"a.bin\" 0\n";
    }
    EXPECT_FALSE(timelineOfToc(text, {INT64_MAX}).ok());
}

} // namespace
} // namespace sonarith::disc
