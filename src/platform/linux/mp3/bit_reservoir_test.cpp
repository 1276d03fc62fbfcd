// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/bit_reservoir.h"

#include <gmock/gmock.h>

#include "platform/linux/mp3/mp3_fixture.h"

namespace sonarith::mp3 {
namespace {

using fixture::Data;

/// A frame of 128 kbit/s (MPEG-1) that refers to `begin` bytes of earlier frames and adds 381 bytes
/// of main data.
Data frameReaching(int begin) {
    Data frame(417, 0x55);
    frame[0] = 0xFF;
    frame[1] = 0xFB;
    frame[2] = 0x90;
    frame[3] = 0x64;
    frame[4] = static_cast<std::uint8_t>(begin >> 1);
    frame[5] = static_cast<std::uint8_t>((begin & 1) << 7 | 0x55);
    return frame;
}

std::optional<int> admit(BitReservoir& reservoir, const Data& frame) {
    return reservoir.admit(*parseHeader(frame), frame);
}

TEST(BitReservoirTest, AdmitsFramesThatReferToAvailableData) {
    BitReservoir reservoir;
    EXPECT_EQ(admit(reservoir, frameReaching(0)), std::nullopt);
    EXPECT_EQ(admit(reservoir, frameReaching(381)), std::nullopt);
    EXPECT_EQ(admit(reservoir, frameReaching(511)), std::nullopt);
}

TEST(BitReservoirTest, ReturnsTheNumberOfAvailableBytesForAFrameThatRefersTooFarBack) {
    BitReservoir reservoir;
    EXPECT_EQ(admit(reservoir, frameReaching(1)), 0);
    EXPECT_EQ(admit(reservoir, frameReaching(382)), 381);
    EXPECT_EQ(admit(reservoir, frameReaching(511)), std::nullopt)
        << "the data of a frame that refers too far back must be available to the next frame";
    reservoir.clear();
    EXPECT_EQ(admit(reservoir, frameReaching(200)), 0);
}

TEST(BitReservoirTest, DropsOlderDataAtAFrameThatRefersToNoEarlierData) {
    BitReservoir reservoir;
    EXPECT_EQ(admit(reservoir, frameReaching(0)), std::nullopt);
    EXPECT_EQ(admit(reservoir, frameReaching(0)), std::nullopt);
    EXPECT_EQ(admit(reservoir, frameReaching(382)), 381);
}

TEST(BitReservoirTest, AdmitsTruncatedFramesAndFramesOfLayer2) {
    BitReservoir reservoir;
    EXPECT_EQ(admit(reservoir, fixture::layer2(1)), std::nullopt);
    const Data frame = frameReaching(300);
    EXPECT_EQ(reservoir.admit(*parseHeader(frame), Bytes(frame).first(20)), std::nullopt);
}

TEST(BitReservoirTest, SilencingAFrameSetsMainDataBeginAndEmptiesTheSideInformation) {
    for (const int begin : {0, 1, 255, 511}) {
        Data frame = frameReaching(400);
        const FrameHeader header = *parseHeader(frame);
        EXPECT_FALSE(isEmptySideInfo(header, frame));
        silence(header, frame, begin);
        EXPECT_EQ(mainDataBegin(header, frame), begin);
        EXPECT_TRUE(isEmptySideInfo(header, frame));
        EXPECT_EQ(frame[36], 0x55) << "main data must not change: later frames need them";
    }
    Data mpeg2(96, 0x55);
    std::copy_n(Data{0xFF, 0xF3, 0x40, 0xC4}.begin(), 4, mpeg2.begin());
    silence(*parseHeader(mpeg2), mpeg2, 255);
    EXPECT_EQ(mainDataBegin(*parseHeader(mpeg2), mpeg2), 255);
    EXPECT_TRUE(isEmptySideInfo(*parseHeader(mpeg2), mpeg2));
    EXPECT_EQ(mpeg2[13], 0x55);
}

TEST(BitReservoirTest, SideInformationCountsAsEmptyOnlyIfItsDecodingCannotFail) {
    const FrameHeader header = *parseHeader(frameReaching(0));
    // If a single bit of the length, the big values, the scale factors or the window kind is set,
    // the side information is not empty. In MPEG-1 stereo, these fields begin at bit 20, and are
    // repeated every 59 bits: for both channels of both granules.
    for (const int bit : {20, 31, 32, 40, 49, 52, 53, 20 + 3 * 59, 20 + 3 * 59 + 33}) {
        Data frame = frameReaching(0);
        silence(header, frame, 0);
        frame[static_cast<std::size_t>(4 + bit / 8)] |= static_cast<std::uint8_t>(0x80 >> bit % 8);
        EXPECT_FALSE(isEmptySideInfo(header, frame)) << "bit " << bit;
    }
    Data frame = frameReaching(0);
    silence(header, frame, 0);
    frame[4 + 41 / 8] |=
        0x80 >> 41 % 8; // a bit of the gain, which may be set: every gain can be decoded
    EXPECT_TRUE(isEmptySideInfo(header, frame));
}

} // namespace
} // namespace sonarith::mp3
