// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/mp3_header.h"

#include <gmock/gmock.h>

#include <vector>

namespace sonarith::mp3 {
namespace {

using Data = std::vector<std::uint8_t>;

struct Case {
    Data bytes;
    StreamFormat format;
    int size;
    int samples;
};

TEST(Mp3HeaderTest, ReturnsTheFormatTheSizeAndTheSampleCountOfAFrame) {
    const std::vector<Case> cases{
        {{0xFF, 0xFB, 0x90, 0x64}, {MpegVersion::mpeg1, 3, 44100, 2}, 417, 1152},
        {{0xFF, 0xFB, 0x92, 0x64}, {MpegVersion::mpeg1, 3, 44100, 2}, 418, 1152},
        {{0xFF, 0xFB, 0xE8, 0xC4}, {MpegVersion::mpeg1, 3, 32000, 1}, 1440, 1152},
        {{0xFF, 0xF3, 0x14, 0xC4}, {MpegVersion::mpeg2, 3, 24000, 1}, 24, 576},
        {{0xFF, 0xE3, 0x18, 0xC4}, {MpegVersion::mpeg25, 3, 8000, 1}, 72, 576},
        {{0xFF, 0xFD, 0xA0, 0x04}, {MpegVersion::mpeg1, 2, 44100, 2}, 626, 1152},
        {{0xFF, 0xE5, 0xEA, 0x04}, {MpegVersion::mpeg25, 2, 8000, 2}, maxFrameBytes, 1152},
        {{0xFF, 0xFF, 0xE2, 0x04}, {MpegVersion::mpeg1, 1, 44100, 2}, 488, 384},
        {{0xFF, 0xFB, 0x00, 0x64}, {MpegVersion::mpeg1, 3, 44100, 2}, 0, 1152}, // free format
    };
    for (const Case& one : cases) {
        const auto header = parseHeader(one.bytes);
        ASSERT_TRUE(header);
        EXPECT_EQ(header->format, one.format) << "frame of " << one.size << " bytes";
        EXPECT_EQ(header->bytes, one.size);
        EXPECT_EQ(header->format.samplesPerFrame(), one.samples);
    }
}

TEST(Mp3HeaderTest, RefusesInvalidHeaders) {
    const std::vector<Data> cases{
        {},
        {0xFF, 0xFB, 0x90},       // too short
        {0xFE, 0xFB, 0x90, 0x64}, // no sync
        {0xFF, 0xDB, 0x90, 0x64}, // no sync
        {0xFF, 0xEB, 0x90, 0x64}, // reserved version
        {0xFF, 0xF9, 0x90, 0x64}, // reserved layer
        {0xFF, 0xFB, 0xF0, 0x64}, // forbidden bit rate
        {0xFF, 0xFB, 0x9C, 0x64}, // reserved sample rate
    };
    for (const Data& bytes : cases) {
        EXPECT_FALSE(parseHeader(bytes)) << testing::PrintToString(bytes);
    }
}

TEST(Mp3HeaderTest, ReturnsThePositionAndSizeOfTheSideInformation) {
    const FrameHeader plain = *parseHeader(Data{0xFF, 0xFB, 0x90, 0x64});
    EXPECT_EQ(plain.sideInfoOffset(), 4U);
    EXPECT_EQ(plain.sideInfoBytes(), 32U);
    EXPECT_EQ(plain.mainDataBytes(), 417 - 36);
    const FrameHeader checked = *parseHeader(Data{0xFF, 0xF2, 0x14, 0x64});
    EXPECT_EQ(checked.sideInfoOffset(), 6U);
    EXPECT_EQ(checked.sideInfoBytes(), 17U);
    EXPECT_EQ(checked.mainDataBytes(), 1); // in the smallest possible frame: 24 bytes
    EXPECT_EQ(parseHeader(Data{0xFF, 0xFB, 0x90, 0xC4})->sideInfoBytes(), 17U);
    EXPECT_EQ(parseHeader(Data{0xFF, 0xF3, 0x90, 0xC4})->sideInfoBytes(), 9U);
}

} // namespace
} // namespace sonarith::mp3
