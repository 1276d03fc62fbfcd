// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/mp3_analysis_fixture.h"

namespace sonarith {
namespace {

using test::commonHeader;
using test::FakeFileSystem;
using test::Mp3Bytes;
using test::tagOf;
using testing::ElementsAre;
using testing::IsEmpty;

// --- the search ------------------------------------------------------------------------------

TEST_F(Mp3AnalysisTest, FindsAFrameOnlyIfItStartsAtByte1To5000) {
    for (const std::size_t position : {1U, 2U, 36U, 255U, 4999U, 5000U}) {
        info = {};
        EXPECT_TRUE(analyse(Mp3Bytes(10'000).header(position, commonHeader)).ok());
        EXPECT_EQ(info.Bitrate, 128) << position;
    }
    info = {};
    EXPECT_TRUE(analyse(Mp3Bytes(10'000).header(5001, commonHeader)).ok());
    EXPECT_EQ(info.Bitrate, 0);
    EXPECT_EQ(digitsOf(Mp3Bytes(10'000).header(5001, commonHeader).content), "");
}

TEST_F(Mp3AnalysisTest, UsesTheFirstOfSeveralFrames) {
    Mp3Bytes bytes(10'000);
    bytes.header(417, 0xFFFBB000).header(100, commonHeader);
    EXPECT_TRUE(analyse(bytes).ok());
    EXPECT_EQ(info.Bitrate, 128);
}

TEST_F(Mp3AnalysisTest, AcceptsOnlyTwoValuesOfTheSecondSyncByte) {
    for (std::uint32_t second = 0; second < 256; ++second) {
        const std::string digits =
            digitsOf(Mp3Bytes(600).header(300, 0xFF000000U + second * 0x10000U + 0x9000U).content);
        EXPECT_EQ(digits.size(), second == 0xFA || second == 0xFB ? 32U : 0U) << second;
    }
}

TEST_F(Mp3AnalysisTest, FindsAFrameAfterAnExtraByteFF) {
    EXPECT_TRUE(analyse(Mp3Bytes(600).at(299, "\xff").header(300, commonHeader)).ok());
    EXPECT_EQ(info.Bitrate, 128);
}

TEST_F(Mp3AnalysisTest, DoesNotFindAFrameAfterATagOf6000Bytes) {
    EXPECT_TRUE(analyse(Mp3Bytes(20'000).at(1, "ID3").header(6001, commonHeader)).ok());
    EXPECT_EQ(info.Bitrate, 0);
}

TEST_F(Mp3AnalysisTest, MistakesSyncBytesInALeadingTagForAFrame) {
    Mp3Bytes bytes(20'000);
    bytes.at(1, "ID3").header(50, 0xFFFA1000).header(2000, commonHeader);
    EXPECT_TRUE(analyse(bytes).ok());
    EXPECT_EQ(info.Bitrate, 32);
    EXPECT_EQ(info.CRC, "yes");
}

TEST_F(Mp3AnalysisTest, TreatsBytesBeyondTheEndOfAShortFileAsZeros) {
    // If FF is the file's last byte, the next byte counts as zero, which is no second sync byte, so
    // no frame is found.
    EXPECT_EQ(digitsOf(Mp3Bytes(300).at(300, "\xff").content), "");
    // If the two sync bytes are the last bytes of the file, the missing header bytes count as
    // zeros.
    EXPECT_EQ(digitsOf(Mp3Bytes(300).at(299, "\xff\xfb").content),
              "11111111111110110000000000000000");
}

TEST_F(Mp3AnalysisTest, ConvertsBytes3And4OfTheFrameToDigits) {
    // Only the digits are tested here. mp3_header_test.cpp decodes every value of these two bytes
    // and compares the resulting fields with a table.
    const auto expectDigits = [&](std::uint32_t header) {
        std::string expected;
        for (int bit = 31; bit >= 0; --bit) {
            expected += (header >> bit & 1) != 0 ? '1' : '0';
        }
        ASSERT_EQ(digitsOf(Mp3Bytes(256).header(1, header).content), expected);
    };
    for (std::uint32_t value = 0; value < 256; ++value) {
        expectDigits(0xFFFB0000U + value * 0x100U);
        expectDigits(0xFFFA0000U + value);
    }
}

// --- files without a frame -------------------------------------------------------------------

TEST_F(Mp3AnalysisTest, ReturnsTheDigitsOfTheFirstThreeBytesOfAFileWithoutAFrame) {
    // The digits have no leading zeros; three zero bytes have no digits.
    EXPECT_EQ(digitsOf(Mp3Bytes(6000).at(1, "ID3").content), "10010010100010000110011");
    EXPECT_EQ(digitsOf(Mp3Bytes(6000).content), "");
}

TEST_F(Mp3AnalysisTest, StoresMeaninglessValuesForAFileThatIsNoMp3) {
    // The three bytes have 24 digits: eleven without a meaning, version "11", layer "10",
    // protection "1", bit rate "1001", sampling rate "00", padding "1", private "0". The digits of
    // the fourth header byte (mode, flags and emphasis) are missing.
    Mp3Bytes bytes(4000);
    bytes.at(1, "\x80\x1d\x92");
    EXPECT_TRUE(analyse(bytes).ok());
    EXPECT_EQ(info.MpegVersion, 1);
    EXPECT_EQ(info.MpegLayer, 2);
    EXPECT_EQ(info.CRC, "no");
    EXPECT_EQ(info.Bitrate, 160);
    EXPECT_EQ(info.Frequency, 44100);
    EXPECT_EQ(info.Padding, "yes");
    EXPECT_EQ(info.Private, "no");
    EXPECT_EQ(info.Mode, "stereo");
    EXPECT_EQ(info.Emphasis, "no");
    EXPECT_EQ(info.Original, "no");
    EXPECT_EQ(info.Duration, 0);
}

TEST_F(Mp3AnalysisTest, SearchesForTheXingMarkAtPosition36OfAFileWithoutAFrame) {
    Mp3Bytes bytes(4'000'000);
    bytes.at(1, "\x80\x1d\x90").at(36, "Xing").at(44, Mp3Bytes::bigEndian(30'000));
    EXPECT_TRUE(analyse(bytes).ok());
    EXPECT_TRUE(info.IsVbr);
    EXPECT_EQ(info.Frames, 30'000);
    EXPECT_EQ(info.MpegLayer, 2);
    EXPECT_EQ(info.Bitrate, 41);
}

// --- lengths ---------------------------------------------------------------------------------

TEST_F(Mp3AnalysisTest, FailsForAFileBelow256BytesAndStoresNothing) {
    for (const std::size_t length : {0U, 1U, 99U, 100U, 127U, 128U, 255U}) {
        fillRecord();
        Mp3Bytes bytes(length);
        if (length >= 128) {
            bytes.header(1, commonHeader).end(std::string("TAGother"));
        }
        const Status status = analyse(bytes);
        ASSERT_FALSE(status.ok()) << length;
        EXPECT_TRUE(info.IsVbr);
        EXPECT_EQ(info.Bitrate, 204);
        EXPECT_EQ(info.Title, "T");
        EXPECT_THAT(disk.log, ElementsAre("openBinary c:\\a.mp3 read")) << length;
    }
}

TEST_F(Mp3AnalysisTest, AcceptsAFileOf256BytesOrMore) {
    for (const std::size_t length : {256U, 257U}) {
        info = {};
        EXPECT_TRUE(analyse(Mp3Bytes(length).header(1, commonHeader).end(tagOf("Title"))).ok());
        EXPECT_EQ(info.Bitrate, 128);
        EXPECT_EQ(info.Title, "Title");
        EXPECT_EQ(info.Duration, 0);
    }
}

TEST_F(Mp3AnalysisTest, ReadsOnlyTheHeadAndTheTailOfALongFile) {
    EXPECT_TRUE(analyse(Mp3Bytes(3'000'000).header(1, commonHeader)).ok());
    EXPECT_THAT(disk.log, ElementsAre("openBinary c:\\a.mp3 read", "readBinary c:\\a.mp3 0 5047",
                                      "readBinary c:\\a.mp3 2999744 256"));
}

// --- failures --------------------------------------------------------------------------------

TEST_F(Mp3AnalysisTest, StoresNothingIfOpeningTheFileOrReadingItsHeadFails) {
    EXPECT_EQ(
        GetMp3Info(disk, "c:\\none.mp3", TagReading::yes, HeaderReading::yes, info).error().number,
        ErrorNumber::fileNotFound);
    for (const auto operation :
         {FakeFileSystem::Operation::lengthOfOpenFile, FakeFileSystem::Operation::readBinary}) {
        disk.failWith(operation, path, ErrorNumber::deviceInputOutput);
        const Status status = analyse(Mp3Bytes(4000).header(1, commonHeader).end(tagOf("T")));
        EXPECT_EQ(status.error().number, ErrorNumber::deviceInputOutput);
        EXPECT_FALSE(info.HasTag);
        EXPECT_EQ(info.Bitrate, 0);
        disk.stopFailing();
    }
}

TEST_F(Mp3AnalysisTest, KeepsThePreviousBitRateAndStoresTheTagIfFileLengthFails) {
    fillRecord();
    disk.failWith(FakeFileSystem::Operation::fileLength, path, ErrorNumber::fileNotFound);
    const Status status = analyse(Mp3Bytes(4000).header(1, commonHeader).end(tagOf("new")));
    EXPECT_EQ(status.error().number, ErrorNumber::fileNotFound);
    EXPECT_EQ(info.Title, "new");
    EXPECT_EQ(info.Bitrate, 204);
}

TEST_F(Mp3AnalysisTest, KeepsThePreviousBitRateAndStoresTheTagIfTheBitRateIs0) {
    fillRecord();
    const Status status = analyse(Mp3Bytes(4000).header(1, 0xFFFB0000).end(tagOf("new")));
    EXPECT_EQ(status.error().number, ErrorNumber::divisionByZero);
    EXPECT_EQ(info.Bitrate, 204);
    EXPECT_EQ(info.Duration, 156);
    EXPECT_EQ(info.CRC, "yes");
    EXPECT_FALSE(info.IsVbr);
    EXPECT_EQ(info.Title, "new");
}

// --- parts of the analysis -------------------------------------------------------------------

TEST_F(Mp3AnalysisTest, ReadsOnlyTheHeaderIfTheTagIsNotRequested) {
    fillRecord();
    EXPECT_TRUE(analyse(Mp3Bytes(4000).header(1, commonHeader).end(tagOf("new")).content,
                        TagReading::no, HeaderReading::yes)
                    .ok());
    EXPECT_EQ(info.Bitrate, 128);
    EXPECT_EQ(info.Title, "T");
    EXPECT_THAT(disk.log, ElementsAre("openBinary c:\\a.mp3 read", "readBinary c:\\a.mp3 0 5047"));
}

TEST_F(Mp3AnalysisTest, ReadsOnlyTheTagIfTheHeaderIsNotRequested) {
    fillRecord();
    EXPECT_TRUE(analyse(Mp3Bytes(4000).header(1, commonHeader).end(tagOf("new")).content,
                        TagReading::yes, HeaderReading::no)
                    .ok());
    EXPECT_EQ(info.Title, "new");
    EXPECT_EQ(info.Bitrate, 204);
    EXPECT_TRUE(info.IsVbr);
    EXPECT_EQ(info.Frames, 6000);
    EXPECT_EQ(info.CRC, "yes");
    EXPECT_THAT(disk.log,
                ElementsAre("openBinary c:\\a.mp3 read", "readBinary c:\\a.mp3 3744 256"));
}

TEST_F(Mp3AnalysisTest, ReturnsAnEmptyRecordAndStoresTheResultInItsArgument) {
    disk.addFile(path, Mp3Bytes(4000).header(1, commonHeader).end(tagOf("T")).content);
    const auto result = GetMp3Info(disk, path, TagReading::yes, HeaderReading::yes, info);
    ASSERT_TRUE(result.ok());
    EXPECT_EQ(result.value().Bitrate, 0);
    EXPECT_FALSE(result.value().HasTag);
    EXPECT_THAT(result.value().Title, IsEmpty());
    EXPECT_EQ(info.Bitrate, 128);
}

TEST_F(Mp3AnalysisTest, DoesNotChangeTheFile) {
    const std::string before = Mp3Bytes(4000).header(1, commonHeader).end(tagOf("T")).content;
    EXPECT_TRUE(analyse(before).ok());
    EXPECT_EQ(disk.content(path), before);
}

TEST_F(Mp3AnalysisTest, AFileWhoseTailCannotBeReadHasAHeaderAndNoTag) {
    fillRecord();
    disk.meanwhile = [&](const std::string& entry) {
        if (entry == "readBinary c:\\a.mp3 3744 256") {
            disk.failWith(FakeFileSystem::Operation::readBinary, path,
                          ErrorNumber::deviceInputOutput);
        }
    };
    EXPECT_TRUE(analyse(Mp3Bytes(4000).header(1, commonHeader).end(tagOf("new"))).ok());
    EXPECT_EQ(info.Bitrate, 128);
    EXPECT_FALSE(info.HasTag);
    EXPECT_EQ(info.Title + info.Artist + info.Album + info.Year + info.Comment + info.Track, "");
    EXPECT_EQ(info.Genre, 255);
}

TEST_F(Mp3AnalysisTest, KeepsThePreviousGenreIfTheFileLosesItsLastByte) {
    fillRecord();
    const std::string whole = Mp3Bytes(4000).header(1, commonHeader).end(tagOf("new")).content;
    disk.meanwhile = [&](const std::string& entry) {
        if (entry == "readBinary c:\\a.mp3 3744 256") {
            disk.addFile(path, whole.substr(0, 3999));
        }
    };
    EXPECT_TRUE(analyse(whole).ok());
    EXPECT_EQ(info.Title, "new");
    EXPECT_EQ(info.Genre, 17);
}

TEST_F(Mp3AnalysisTest, ComputesTheDurationFromTheWholeFileIncludingItsTags) {
    // 16,000 bytes are one second. Without its 5,117 bytes of tags, the file would last 1.7 s, and
    // Duration would be 1.
    Mp3Bytes bytes(32'000);
    bytes.at(1, "ID3").header(4'990, commonHeader).end(tagOf("T"));
    EXPECT_TRUE(analyse(bytes).ok());
    EXPECT_EQ(info.Duration, 2);
}

} // namespace
} // namespace sonarith
