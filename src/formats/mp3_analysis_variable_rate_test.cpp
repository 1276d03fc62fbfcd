// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the analysis of MP3 files with a variable bit rate.
#include "formats/mp3_analysis_fixture.h"

namespace sonarith {
namespace {

using test::commonHeader;
using test::Mp3Bytes;
using test::tagOf;
using testing::ElementsAre;

TEST_F(Mp3AnalysisTest, ReadsTheFrameCountAtItsOffsetFromTheStartOfTheFrame) {
    EXPECT_TRUE(
        analyse(Mp3Bytes(4'000'000).header(500, commonHeader).variableRate(500, 6000)).ok());
    EXPECT_TRUE(info.IsVbr);
    EXPECT_EQ(info.Frames, 6000);
    EXPECT_EQ(info.Bitrate, 204);
    EXPECT_EQ(info.Duration, 156);
}

TEST_F(Mp3AnalysisTest, ReadsTheFrameCountInAFrameThatStartsAtByte5000) {
    EXPECT_TRUE(analyse(Mp3Bytes(5047).header(5000, commonHeader).variableRate(5000, 0x1234)).ok());
    EXPECT_EQ(info.Frames, 0x1234);
}

TEST_F(Mp3AnalysisTest, IgnoresTheFlagsBetweenTheXingMarkAndTheFrameCount) {
    EXPECT_TRUE(analyse(Mp3Bytes(4'000'000)
                            .header(1, commonHeader)
                            .variableRate(1, 6000)
                            .at(41, std::string(4, '\0')))
                    .ok());
    EXPECT_EQ(info.Frames, 6000);
}

TEST_F(Mp3AnalysisTest, AcceptsTheXingMarkOnlyInOneSpellingAndAtOneOffset) {
    for (const char* other : {"xing", "XING", "Info", "VBRI", "Xin"}) {
        info = {};
        EXPECT_TRUE(analyse(Mp3Bytes(4'000'000).header(1, commonHeader).at(37, other)).ok());
        EXPECT_FALSE(info.IsVbr) << other;
        EXPECT_EQ(info.Bitrate, 128) << other;
    }
    // In a mono frame the mark is 15 bytes earlier. It is not found there, so the bit rate counts
    // as constant.
    Mp3Bytes mono(4'000'000);
    mono.header(1, 0xFFFB50C0).at(22, "Xing").at(30, Mp3Bytes::bigEndian(6000));
    EXPECT_TRUE(analyse(mono).ok());
    EXPECT_FALSE(info.IsVbr);
    EXPECT_EQ(info.Bitrate, 64);
}

TEST_F(Mp3AnalysisTest, KeepsThePreviousFrameCountIfTheBitRateIsConstant) {
    fillRecord();
    EXPECT_TRUE(analyse(Mp3Bytes(4000).header(1, commonHeader)).ok());
    EXPECT_FALSE(info.IsVbr);
    EXPECT_EQ(info.Frames, 6000);
    EXPECT_EQ(info.Bitrate, 128);
}

TEST_F(Mp3AnalysisTest, StoresNoHeaderAndNoTagIfTheFrameCountIsAbove32767) {
    for (const std::uint32_t count : {32768U, 65536U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        fillRecord();
        const Status status = analyse(
            Mp3Bytes(4'000'000).header(1, commonHeader).variableRate(1, count).end(tagOf("other")));
        ASSERT_FALSE(status.ok()) << count;
        EXPECT_EQ(status.error().number, ErrorNumber::overflow);
        EXPECT_TRUE(info.IsVbr);
        EXPECT_EQ(info.Frames, 6000);
        EXPECT_EQ(info.Title, "T");
        EXPECT_EQ(info.Duration, 156);
        EXPECT_THAT(disk.log,
                    ElementsAre("openBinary c:\\a.mp3 read", "readBinary c:\\a.mp3 0 5047"));
    }
    Mp3Info constant;
    info = constant;
    analyse(Mp3Bytes(4'000'000).header(1, commonHeader).variableRate(1, 32768)).passOver();
    EXPECT_TRUE(info.IsVbr);
}

TEST_F(Mp3AnalysisTest, AcceptsAFrameCountOf32767AndFailsForAFrameCountOf0) {
    EXPECT_TRUE(analyse(Mp3Bytes(4'000'000).header(1, commonHeader).variableRate(1, 32767)).ok());
    EXPECT_EQ(info.Frames, 32767);
    EXPECT_EQ(info.Bitrate, 37);
    const Status status =
        analyse(Mp3Bytes(4'000'000).header(1, commonHeader).variableRate(1, 0).end(tagOf("other")));
    EXPECT_EQ(status.error().number, ErrorNumber::divisionByZero);
    EXPECT_EQ(info.Frames, 0);
    EXPECT_EQ(info.Bitrate, 37);
    EXPECT_EQ(info.Title, "other");
}

TEST_F(Mp3AnalysisTest, FrameCountBytesBeyondTheEndOfTheFileAreReadAsZeros) {
    Mp3Bytes bytes(300);
    bytes.header(255, commonHeader).at(255 + 36, "Xing").at(255 + 44, std::string("\0\x01", 2));
    EXPECT_EQ(analyse(bytes).error().number, ErrorNumber::overflow)
        << "the count is 00 01 00 00 (hexadecimal), so it is above 32767";
    EXPECT_TRUE(info.IsVbr);
    Mp3Bytes shorter(290 + 4);
    shorter.header(255, commonHeader).at(255 + 36, "Xing");
    EXPECT_EQ(analyse(shorter).error().number, ErrorNumber::divisionByZero);
    EXPECT_EQ(info.Frames, 0);
}

} // namespace
} // namespace sonarith
