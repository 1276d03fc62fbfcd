// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/image_disc.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

#include "platform/linux/disc/image_fixture.h"
#include "support/refused_call.h"
#include "support/unprivileged.h"

namespace sonarith::disc {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

std::shared_ptr<ImageDisc> opened(const std::filesystem::path& path) {
    auto disc = ImageDisc::open(path);
    EXPECT_TRUE(disc.ok()) << disc.error().text;
    return disc.valueOr(nullptr);
}

std::string refused(const std::filesystem::path& path) {
    const auto disc = ImageDisc::open(path);
    EXPECT_FALSE(disc.ok());
    return disc.ok() ? std::string() : disc.error().text;
}

void expectTimeLine(const std::filesystem::path& path,
                    const std::vector<sound::StereoFrame>& expected) {
    const auto disc = opened(path);
    ASSERT_NE(disc, nullptr);
    EXPECT_THAT(disc->remark(), IsEmpty());
    expectFrames(wholeLine(*disc), expected);
}

std::string twoTracks(const std::string& file) {
    return "FILE " + file +
           "\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
           "TRACK 02 AUDIO\nINDEX 00 00:00:10\nINDEX 01 00:00:15\n";
}

TEST(ImageDisc, PlaysEverySampleOfABinaryFile) {
    const ImageFolder folder;
    folder.writeFrames("a.bin", rampSectors(0, 30));
    const auto path = folder.write("a.cue", twoTracks("a.bin BINARY"));
    EXPECT_EQ(opened(path)->table().start(2), 15);
    expectTimeLine(path, rampSectors(0, 30));
}

TEST(ImageDisc, PlaysAFileWithTheHighBytesFirst) {
    const ImageFolder folder;
    folder.writeFrames("a.bin", rampSectors(0, 30), std::endian::big);
    expectTimeLine(folder.write("a.cue", twoTracks("a.bin MOTOROLA")), rampSectors(0, 30));
}

TEST(ImageDisc, PlaysAWaveFileAndPadsItsLastSector) {
    const ImageFolder folder;
    folder.writeWave("a.wav", ramp(0, 30 * 588 + 5));
    expectTimeLine(
        folder.write("a.cue", twoTracks("a.wav WAVE")),
        joined({ramp(0, 30 * 588 + 5), ramp(0, 0), std::vector<sound::StereoFrame>(583)}));
}

TEST(ImageDisc, PlaysFilesOneAfterTheOther) {
    const ImageFolder folder;
    folder.writeFrames("1.bin", rampSectors(0, 10));
    folder.writeWave("2.wav", rampSectors(10, 12));
    folder.writeFrames("3.bin", rampSectors(22, 9), std::endian::big);
    expectTimeLine(folder.write("a.cue",
                                "FILE 1.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                                "FILE 2.wav WAVE\nTRACK 02 AUDIO\nINDEX 00 00:00:00\n"
                                "INDEX 01 00:00:04\n"
                                "FILE 3.bin MOTOROLA\nTRACK 03 AUDIO\nINDEX 01 00:00:00\n"),
                   rampSectors(0, 31));
    EXPECT_EQ(opened(folder.path("a.cue"))->table().start(2), 14);
}

TEST(ImageDisc, SkipsThePauseBeforeTrack1AndPlaysOtherPausesFromTheFileOrAsSilence) {
    const ImageFolder folder;
    folder.writeFrames("a.bin", rampSectors(0, 40));
    const auto path = folder.write(
        "a.cue", "FILE a.bin BINARY\n"
                 "TRACK 01 AUDIO\nPREGAP 00:02:00\nINDEX 00 00:00:00\nINDEX 01 00:00:03\n"
                 "TRACK 02 AUDIO\nINDEX 00 00:00:10\nINDEX 01 00:00:12\nPOSTGAP 00:00:04\n"
                 "TRACK 03 AUDIO\nPREGAP 00:00:06\nINDEX 01 00:00:20\n");
    expectTimeLine(path, joined({rampSectors(3, 9), rampSectors(12, 8), silentSectors(4 + 6),
                                 rampSectors(20, 20)}));
    const Table table = opened(path)->table();
    EXPECT_EQ(table.start(2), 9);
    EXPECT_EQ(table.start(3), 9 + 18);
}

TEST(ImageDisc, ReadsAnyRangeOfSectors) {
    const ImageFolder folder;
    folder.writeFrames("a.bin", rampSectors(0, 40));
    const auto disc = opened(folder.write(
        "a.cue", "FILE a.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\nPOSTGAP 00:00:03\n"
                 "TRACK 02 AUDIO\nINDEX 01 00:00:10\n"));
    const auto whole = wholeLine(*disc, 1);
    expectFrames(whole, joined({rampSectors(0, 10), silentSectors(3), rampSectors(10, 30)}));
    for (const std::int64_t count : {1, 2, 5, 12, 43}) {
        for (std::int64_t first = 0; first + count <= 43; ++first) {
            std::vector<sound::StereoFrame> block(static_cast<std::size_t>(count * 588));
            ASSERT_EQ(disc->read(first, block), ReadOutcome::ok);
            expectFrames(block,
                         {whole.begin() + first * 588, whole.begin() + (first + count) * 588});
        }
    }
}

TEST(ImageDisc, PlaysTheFileRangesAndTheSilencesOfATocSheet) {
    const ImageFolder folder;
    folder.writeFrames("a.bin", rampSectors(0, 30), std::endian::big);
    folder.writeFrames("b.bin", ramp(30 * 588, 1000), std::endian::little);
    folder.writeWave("c.wav", rampSectors(40, 5));
    const auto path = folder.write("A.TOC", "CD_DA\n"
                                            "TRACK AUDIO\nFILE \"a.bin\" 00:00:02 00:00:08\n"
                                            "TRACK AUDIO\nFILE \"a.bin\" 5880 00:00:20\n"
                                            "START 00:00:03\nFILE \"b.bin\" SWAP 0\n"
                                            "TRACK AUDIO\nSILENCE 00:00:02\nZERO 588\nSTART\n"
                                            "FILE \"c.wav\" 588\nSILENCE 1\n");
    expectTimeLine(path, joined({rampSectors(2, 28), ramp(30 * 588, 1000),
                                 // silence up to the next sector, and the pause before track 3
                                 std::vector<sound::StereoFrame>(2 * 588 - 1000), silentSectors(3),
                                 rampSectors(41, 4), silentSectors(1)}));
    EXPECT_EQ(opened(path)->table().start(2), 8 + 3);
    EXPECT_EQ(opened(path)->table().start(3), 8 + 20 + 2 + 3);
}

TEST(ImageDisc, PlaysToTheLastSampleIfAStatedLengthEndsInsideASector) {
    const ImageFolder folder;
    folder.writeWave("a.wav", ramp(0, 10 * 588 + 355));
    folder.writeFrames("b.bin", ramp(10 * 588 + 355, 233), std::endian::big);
    expectTimeLine(folder.write("a.toc", "TRACK AUDIO\nAUDIOFILE \"a.wav\" 0 6235\n"
                                         "FILE \"b.bin\" 0 233\n"),
                   rampSectors(0, 11));
    expectTimeLine(folder.write("b.toc", "TRACK AUDIO\nAUDIOFILE \"a.wav\" 0 6235\n"),
                   joined({ramp(0, 6235), std::vector<sound::StereoFrame>(233)}));
}

TEST(ImageDisc, ADataTrackIsInTheTableAndIsReadAsSilence) {
    const ImageFolder folder;
    folder.writeFrames("a.bin", rampSectors(0, 30));
    const auto path = folder.write("a.cue", "FILE a.bin BINARY\nTRACK 01 AUDIO\n"
                                            "INDEX 01 00:00:00\nREM SESSION 02\n"
                                            "TRACK 02 MODE2/2352\nINDEX 00 00:00:10\n"
                                            "INDEX 01 00:00:12\n");
    expectTimeLine(path, joined({rampSectors(0, 10), silentSectors(18)}));
    EXPECT_EQ(opened(path)->table().tracks[1].kind, TrackKind::data);
}

TEST(ImageDisc, IgnoresTheLetterCaseOfFileNamesAndDetectsTheKindOfASheetByItsText) {
    const ImageFolder folder;
    folder.writeFrames("Disc.Bin", rampSectors(0, 30));
    const auto cue = twoTracks("DISC.BIN BINARY");
    const std::string toc = "CD_DA\nTRACK AUDIO\nFILE \"disc.BIN\" SWAP 0\n";
    expectTimeLine(folder.write("a.CuE", cue), rampSectors(0, 30));
    expectTimeLine(folder.write("a.txt", cue), rampSectors(0, 30));
    expectTimeLine(folder.write("b.txt", toc), rampSectors(0, 30));
    EXPECT_THAT(refused(folder.write("c.txt", "hello\n")), HasSubstr("neither a CUE sheet nor"));
    EXPECT_THAT(refused(folder.path("Disc.Bin")), StartsWith("Disc.Bin"));
}

TEST(ImageDisc, PlaysABinFileThatIsShorterThanStatedAndReportsTheMissingRest) {
    const ImageFolder folder;
    std::string bytes(17 * 2352 + 1000, '\x42');
    folder.write("a.bin", bytes);
    const auto disc = opened(folder.write(
        "a.cue", "FILE a.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                 "TRACK 02 AUDIO\nINDEX 01 00:00:10\nTRACK 03 AUDIO\nINDEX 01 00:00:25\n"));
    ASSERT_NE(disc, nullptr);
    EXPECT_EQ(disc->table().tracks[1].sectors, 15);
    const std::vector<sound::StereoFrame> present(17 * 588, {0x4242, 0x4242});
    auto expected = joined({present, silentSectors(25 - 17)});
    const auto whole = wholeLine(*disc);
    expectFrames({whole.begin(), whole.begin() + 25 * 588}, expected);
    expectFrames({whole.begin() + 25 * 588, whole.end()}, silentSectors(300));
    EXPECT_THAT(disc->remark(), AllOf(HasSubstr("a.bin"), HasSubstr("track 2 is truncated"),
                                      HasSubstr("from 00:00:07 on"), HasSubstr("track 3")));
}

TEST(ImageDisc, ReportsWhichFileCannotBeReadAndWhichLineOfTheSheetNamesTheFile) {
    const ImageFolder folder;
    EXPECT_EQ(
        refused(folder.write("a.cue", "REM\n" + twoTracks("b.bin BINARY"))),
        "a.cue, line 2: \"b.bin\" cannot be read: the file was not found in the sheet's folder");
    std::filesystem::create_directory(folder.path("b.bin"));
    EXPECT_EQ(refused(folder.path("a.cue")),
              "a.cue, line 2: \"b.bin\" cannot be read: it is not a regular file");
    folder.write("c.wav", "no sound");
    EXPECT_THAT(refused(folder.write("c.cue", twoTracks("c.wav WAVE"))),
                StartsWith("c.cue, line 1: \"c.wav\" cannot be read: it is not a valid WAVE file"));
    EXPECT_EQ(refused(folder.path("none.cue")),
              "none.cue: cannot be read: the file does not exist");
    EXPECT_EQ(refused(folder.path("")), ": cannot be read: it is not a regular file");
}

TEST(ImageDisc, RefusesASheetThatCannotBeReadToItsEnd) {
    const ImageFolder folder;
    folder.write("a.bin", std::string(20 * bytesPerSector, 'x'));
    const auto sheet = folder.write("a.cue", twoTracks("a.bin BINARY"));
    std::filesystem::permissions(sheet.parent_path(), std::filesystem::perms::all);
    EXPECT_EQ(test::runUnprivileged([&] {
                  if (!test::refuseReads()) {
                      return 1;
                  }
                  return refused(sheet) == "a.cue: cannot be read completely" ? 0 : 2;
              }),
              0);
}

TEST(ImageDisc, RefusesASheetWhoseBinFileIsEmpty) {
    const ImageFolder folder;
    folder.write("a.bin", "");
    EXPECT_THAT(refused(folder.write("a.cue", twoTracks("a.bin BINARY"))),
                StartsWith("a.cue, line 2: no content of the disc was found"));
}

TEST(ImageDisc, RefusesASheetOfTwoGibibytes) {
    const ImageFolder folder;
    for (const char* name : {"a.cue", "a.toc", "a.xyz"}) {
        folder.write(name, "REM\n");
        std::filesystem::resize_file(folder.path(name), std::uintmax_t{2} << 30);
        EXPECT_THAT(refused(folder.path(name)), StartsWith(name)) << name;
    }
    EXPECT_THAT(refused(folder.path("a.cue")), HasSubstr("longer than 1 MiB"));
}

TEST(ImageDisc, DoesNotWaitForAPipe) {
    const ImageFolder folder;
    ASSERT_EQ(::mkfifo(folder.path("a.cue").c_str(), 0600), 0);
    EXPECT_THAT(refused(folder.path("a.cue")), HasSubstr("not a regular file"));
    ASSERT_EQ(::mkfifo(folder.path("b.bin").c_str(), 0600), 0);
    EXPECT_THAT(refused(folder.write("b.cue", twoTracks("b.bin BINARY"))),
                HasSubstr("not a regular file"));
}

class VanishingImage : public ::testing::Test {
  protected:
    VanishingImage() {
        folder_.writeFrames("a.bin", rampSectors(0, 30));
        disc_ = opened(folder_.write("a.cue", twoTracks("a.bin BINARY")));
    }
    ReadOutcome readOne(std::int64_t sector) {
        std::vector<sound::StereoFrame> block(588);
        return disc_->read(sector, block);
    }

    ImageFolder folder_;
    std::shared_ptr<ImageDisc> disc_;
};

TEST_F(VanishingImage, IsGoneWhenItsFileIsDeleted) {
    EXPECT_EQ(readOne(0), ReadOutcome::ok);
    std::filesystem::remove(folder_.path("a.bin"));
    EXPECT_EQ(readOne(0), ReadOutcome::gone);
}

TEST_F(VanishingImage, IsGoneWhenItsSheetIsDeleted) {
    std::filesystem::remove(folder_.path("a.cue"));
    EXPECT_EQ(readOne(0), ReadOutcome::gone);
}

TEST_F(VanishingImage, IsGoneBeyondTheEndOfATruncatedFile) {
    std::filesystem::resize_file(folder_.path("a.bin"), 10 * 2352);
    EXPECT_EQ(readOne(9), ReadOutcome::ok);
    EXPECT_EQ(readOne(10), ReadOutcome::gone);
}

TEST(ImageDisc, IsGoneWhenItsFolderIsMoved) {
    const ImageFolder folder;
    folder.write("sub/a.cue", twoTracks("a.bin BINARY"));
    folder.writeFrames("sub/a.bin", rampSectors(0, 30));
    const auto disc = opened(folder.path("sub/a.cue"));
    std::vector<sound::StereoFrame> block(588);
    EXPECT_EQ(disc->read(0, block), ReadOutcome::ok);
    std::filesystem::rename(folder.path("sub"), folder.path("moved"));
    EXPECT_EQ(disc->read(0, block), ReadOutcome::gone);
}

TEST_F(VanishingImage, IsGoneAfterAnEject) {
    disc_->eject();
    EXPECT_EQ(readOne(0), ReadOutcome::gone);
}

} // namespace
} // namespace sonarith::disc
