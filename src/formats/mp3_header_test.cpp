// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/mp3_header.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>

#include "formats/mp3_bits.h"

namespace sonarith {
namespace {

constexpr std::int64_t fourMillion = 4'000'000; ///< length of a file in bytes

/// The binary digits of the four bytes of `header`.
std::string digitsOf(std::uint32_t header) {
    FourBytes bytes{0, static_cast<std::uint8_t>(header >> 24U),
                    static_cast<std::uint8_t>(header >> 16U),
                    static_cast<std::uint8_t>(header >> 8U), static_cast<std::uint8_t>(header)};
    return BytesToBits(bytes);
}

/// An Mp3Info with values that decodeMp3Header() never stores, so that a test can detect which
/// fields were stored.
Mp3Info untouched() {
    Mp3Info info;
    info.Bitrate = -1;
    info.Frequency = -2;
    info.Duration = -3;
    info.MpegVersion = -4;
    info.MpegLayer = -5;
    info.Mode = info.Emphasis = info.Padding = info.CRC = "before";
    info.CopyRight = info.Original = info.Private = "before";
    return info;
}

void expectUntouched(const Mp3Info& info) {
    const Mp3Info before = untouched();
    EXPECT_EQ(info.Bitrate, before.Bitrate);
    EXPECT_EQ(info.Frequency, before.Frequency);
    EXPECT_EQ(info.Duration, before.Duration);
    EXPECT_EQ(info.MpegVersion, before.MpegVersion);
    EXPECT_EQ(info.MpegLayer, before.MpegLayer);
    for (const std::string* text : {&info.Mode, &info.Emphasis, &info.Padding, &info.CRC,
                                    &info.CopyRight, &info.Original, &info.Private}) {
        EXPECT_EQ(*text, "before");
    }
}

void expectNothingStored(std::uint32_t header, std::int64_t length, const Mp3Info& start) {
    Mp3Info info = start;
    decodeMp3Header(digitsOf(header), length, info).passOver();
    expectUntouched(info);
}

ErrorNumber failureOf(std::uint32_t header, std::int64_t length, Mp3Info info = untouched()) {
    const Status status = decodeMp3Header(digitsOf(header), length, info);
    expectUntouched(info);
    EXPECT_FALSE(status.ok());
    return status.ok() ? ErrorNumber{} : status.error().number;
}

Mp3Info variable(std::int16_t frames) {
    Mp3Info info = untouched();
    info.IsVbr = true;
    info.Frames = frames;
    return info;
}

TEST(Mp3Header, StoresEachFieldOfACommonFile) {
    Mp3Info info = untouched();
    ASSERT_TRUE(decodeMp3Header(digitsOf(0xFFFB9000), fourMillion, info).ok());
    EXPECT_EQ(info.Bitrate, 128);
    EXPECT_EQ(info.Frequency, 44100);
    EXPECT_EQ(info.Mode, "stereo");
    EXPECT_EQ(info.Emphasis, "no");
    EXPECT_EQ(info.MpegVersion, 1);
    EXPECT_EQ(info.MpegLayer, 3);
    EXPECT_EQ(info.Padding, "no");
    EXPECT_EQ(info.CRC, "no");
    EXPECT_EQ(info.Duration, 250);
    EXPECT_EQ(info.CopyRight, "no");
    EXPECT_EQ(info.Original, "no");
    EXPECT_EQ(info.Private, "no");
}

TEST(Mp3Header, ReadsEachFlagFromItsOwnBit) {
    struct Row {
        std::uint32_t header;
        std::string Mp3Info::*field;
    };
    for (const Row& row : {Row{0xFFFA9000, &Mp3Info::CRC}, Row{0xFFFB9200, &Mp3Info::Padding},
                           Row{0xFFFB9100, &Mp3Info::Private}, Row{0xFFFB9008, &Mp3Info::CopyRight},
                           Row{0xFFFB9004, &Mp3Info::Original}}) {
        Mp3Info info;
        ASSERT_TRUE(decodeMp3Header(digitsOf(row.header), fourMillion, info).ok());
        for (const auto field : {&Mp3Info::CRC, &Mp3Info::Padding, &Mp3Info::Private,
                                 &Mp3Info::CopyRight, &Mp3Info::Original}) {
            EXPECT_EQ(info.*field, field == row.field ? "yes" : "no") << std::hex << row.header;
        }
    }
}

// --- every header that ReadMp3Bits() can find: MPEG 1 Layer III ------------------------------

// The tables of the standard. At each index with -1, decodeMp3Header() rejects the header.
constexpr int standardKilobits[16] = {-1,  32,  40,  48,  56,  64,  80,  96,
                                      112, 128, 160, 192, 224, 256, 320, -1};
constexpr int standardHertz[4] = {44100, 48000, 32000, -1};
const char* const standardModes[4] = {"stereo", "joint stereo", "dual channel", "single channel"};
const char* const standardEmphases[4] = {"no", "50/15", "reserved", "CCITT J 17"};

TEST(Mp3Header, DecodesOrRejectsEachOfThe131072HeadersOfMpeg1Layer3) {
    int stored = 0;
    for (std::uint32_t third = 0; third < 256; ++third) {
        const int kilobits = standardKilobits[third / 16];
        const int hertz = standardHertz[third / 4 % 4];
        Mp3Info info = untouched();
        for (std::uint32_t rest = 0; rest < 512; ++rest) {
            const std::uint32_t fourth = rest % 256;
            const bool protectedByCrc = rest >= 256;
            const std::uint32_t header =
                (protectedByCrc ? 0xFFFA0000U : 0xFFFB0000U) + third * 256 + fourth;
            const bool ok = decodeMp3Header(digitsOf(header), fourMillion, info).ok();
            if (kilobits < 0 || hertz < 0) {
                ASSERT_FALSE(ok) << std::hex << header;
                ASSERT_EQ(info.Bitrate, -1);
                ASSERT_EQ(info.Private, "before");
                continue;
            }
            ++stored;
            ASSERT_TRUE(ok) << std::hex << header;
            ASSERT_EQ(info.Bitrate, kilobits) << std::hex << header;
            ASSERT_EQ(info.Frequency, hertz) << std::hex << header;
            ASSERT_EQ(info.Duration, 32000 / kilobits) << std::hex << header;
            ASSERT_EQ(info.Padding, third / 2 % 2 == 1 ? "yes" : "no") << std::hex << header;
            ASSERT_EQ(info.Private, third % 2 == 1 ? "yes" : "no") << std::hex << header;
            ASSERT_EQ(info.Mode, standardModes[fourth / 64]) << std::hex << header;
            ASSERT_EQ(info.CopyRight, fourth / 8 % 2 == 1 ? "yes" : "no") << std::hex << header;
            ASSERT_EQ(info.Original, fourth / 4 % 2 == 1 ? "yes" : "no") << std::hex << header;
            ASSERT_EQ(info.Emphasis, standardEmphases[fourth % 4]) << std::hex << header;
            ASSERT_EQ(info.CRC, protectedByCrc ? "yes" : "no") << std::hex << header;
            ASSERT_EQ(info.MpegVersion, 1);
            ASSERT_EQ(info.MpegLayer, 3);
        }
    }
    // 14 valid bit rates, 3 valid sampling rates, and each value of the other bits: 2 bits of the
    // third byte (4 values), 8 bits of the fourth byte (256) and the protection bit (2).
    EXPECT_EQ(stored, 14 * 3 * 4 * 256 * 2);
}

// --- other versions and layers ---------------------------------------------------------------

TEST(Mp3Header, ForVersionsOtherThanMpeg1StoresNothingAndReportsNoError) {
    for (const std::uint32_t header : {0xFFF39000U, 0xFFE39000U, 0xFFEB9000U}) {
        for (const Mp3Info& start : {untouched(), variable(6000)}) {
            Mp3Info info = start;
            EXPECT_TRUE(decodeMp3Header(digitsOf(header), fourMillion, info).ok());
            expectUntouched(info);
        }
    }
}

TEST(Mp3Header, ForTheReservedLayerStoresNothingAndFailsOnlyIfTheBitRateIsVariable) {
    Mp3Info info = untouched();
    EXPECT_TRUE(decodeMp3Header(digitsOf(0xFFF99000), fourMillion, info).ok());
    expectUntouched(info);
    EXPECT_EQ(failureOf(0xFFF99000, fourMillion, variable(6000)), ErrorNumber::divisionByZero);
}

TEST(Mp3Header, DecodesTheBitRatesOfLayersOneAndTwo) {
    Mp3Info one;
    ASSERT_TRUE(decodeMp3Header(digitsOf(0xFFFF9000), fourMillion, one).ok());
    EXPECT_EQ(one.Bitrate, 288);
    EXPECT_EQ(one.MpegLayer, 1);
    EXPECT_EQ(one.Duration, 111);
    Mp3Info two;
    ASSERT_TRUE(decodeMp3Header(digitsOf(0xFFFD9000), fourMillion, two).ok());
    EXPECT_EQ(two.Bitrate, 160);
    EXPECT_EQ(two.MpegLayer, 2);
    constexpr int ofLayerOne[15] = {0,   32,  64,  96,  128, 160, 192, 224,
                                    256, 288, 320, 352, 384, 416, 448};
    constexpr int ofLayerTwo[15] = {0,   32,  48,  56,  64,  80,  96, 112,
                                    128, 160, 192, 224, 256, 320, 384};
    for (std::uint32_t index = 1; index < 15; ++index) {
        ASSERT_TRUE(decodeMp3Header(digitsOf(0xFFFF0000 + index * 0x1000), 1000, one).ok());
        EXPECT_EQ(one.Bitrate, ofLayerOne[index]);
        ASSERT_TRUE(decodeMp3Header(digitsOf(0xFFFD0000 + index * 0x1000), 1000, two).ok());
        EXPECT_EQ(two.Bitrate, ofLayerTwo[index]);
    }
}

// --- failures --------------------------------------------------------------------------------

TEST(Mp3Header, FailsAndStoresNothingForReservedRatesAndForABitRateOfZero) {
    EXPECT_EQ(failureOf(0xFFFB9C00, fourMillion), ErrorNumber::subscriptOutOfRange);
    EXPECT_EQ(failureOf(0xFFFBF000, fourMillion), ErrorNumber::subscriptOutOfRange);
    EXPECT_EQ(failureOf(0xFFFB0000, fourMillion), ErrorNumber::divisionByZero);
}

TEST(Mp3Header, FailsForFilesOf256MiBAndMore) {
    Mp3Info info = untouched();
    ASSERT_TRUE(decodeMp3Header(digitsOf(0xFFFB9000), 268'435'455, info).ok());
    EXPECT_EQ(info.Duration, 16777);
    for (const std::int64_t length : {268'435'456LL, 1LL << 31, 5LL << 30, 1LL << 62}) {
        EXPECT_EQ(failureOf(0xFFFB9000, length), ErrorNumber::overflow);
        expectNothingStored(0xFFFB9000, length, variable(6000));
    }
}

// --- variable bit rate -----------------------------------------------------------------------

TEST(Mp3Header, StoresTheRoundedAverageRateAndComputesTheDurationFromTheExactRate) {
    Mp3Info info = variable(6000);
    ASSERT_TRUE(decodeMp3Header(digitsOf(0xFFFB9000), fourMillion, info).ok());
    EXPECT_EQ(info.Bitrate, 204);
    EXPECT_EQ(info.Duration, 156);
    // At 2.4 kbit/s the duration from the rounded rate would be 1027 seconds.
    info = variable(32767);
    ASSERT_TRUE(decodeMp3Header(digitsOf(0xFFFB9000), 256'768, info).ok());
    EXPECT_EQ(info.Bitrate, 2);
    EXPECT_EQ(info.Duration, 855);
    EXPECT_NE(info.Duration, 256'768 * 8 / 2 / 1000);
}

TEST(Mp3Header, RoundsTheAverageRateHalfToEven) {
    // 3200 frames at 32000 Hz: 2.5 and 3.5 kbit/s.
    for (const auto& [length, rate] : {std::pair{36'000, 2}, std::pair{50'400, 4}}) {
        Mp3Info info = variable(3200);
        ASSERT_TRUE(decodeMp3Header(digitsOf(0xFFFB9800), length, info).ok());
        EXPECT_EQ(info.Bitrate, rate) << length;
    }
}

TEST(Mp3Header, IgnoresTheBitRateDigitsForAVariableRate) {
    for (const std::uint32_t header : {0xFFFB0000U, 0xFFFBF000U}) {
        Mp3Info info = variable(6000);
        ASSERT_TRUE(decodeMp3Header(digitsOf(header), fourMillion, info).ok());
        EXPECT_EQ(info.Bitrate, 204);
    }
}

TEST(Mp3Header, ComputesTheAverageRateWithTheCoefficientOfTheLayer) {
    Mp3Info one = variable(30000);
    ASSERT_TRUE(decodeMp3Header(digitsOf(0xFFFF9000), fourMillion, one).ok());
    EXPECT_EQ(one.Bitrate, 490);
    Mp3Info two = variable(30000);
    ASSERT_TRUE(decodeMp3Header(digitsOf(0xFFFD9000), fourMillion, two).ok());
    EXPECT_EQ(two.Bitrate, 41);
}

TEST(Mp3Header, FailsForAFrameCountOfZeroAndForAnAverageRateAbove32767KilobitsPerSecond) {
    EXPECT_EQ(failureOf(0xFFFB9000, fourMillion, variable(0)), ErrorNumber::divisionByZero);
    EXPECT_EQ(failureOf(0xFFFB9000, 200'000'000, variable(1)), ErrorNumber::overflow);
}

TEST(Mp3Header, FailsForAReservedSamplingRateEvenIfTheBitRateIsVariable) {
    EXPECT_EQ(failureOf(0xFFFB9C00, fourMillion, variable(6000)), ErrorNumber::subscriptOutOfRange);
}

// --- short texts -----------------------------------------------------------------------------

TEST(Mp3Header, AFieldMissingFromAShortTextHasTheValue0) {
    // Digits 12 to 15 mean version 1, layer 3; 17 to 20 mean 128 kbit/s; the text ends there.
    Mp3Info info = untouched();
    ASSERT_TRUE(decodeMp3Header("11111111111110111001", fourMillion, info).ok());
    EXPECT_EQ(info.Bitrate, 128);
    EXPECT_EQ(info.Frequency, 44100);
    EXPECT_EQ(info.Mode, "stereo");
    EXPECT_EQ(info.Padding, "no");
    EXPECT_EQ(info.CRC, "no");
    info = untouched();
    // The value 0 of the version field means version 2.5, of which no field is stored.
    EXPECT_TRUE(decodeMp3Header("", fourMillion, info).ok());
    expectUntouched(info);
}

} // namespace
} // namespace sonarith
