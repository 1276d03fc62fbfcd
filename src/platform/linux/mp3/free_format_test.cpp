// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/free_format.h"

#include <gmock/gmock.h>

#include "platform/linux/mp3/mp3_fixture.h"

namespace sonarith::mp3 {
namespace {

using fixture::Data;
using fixture::operator+;

Data freeFrame(std::size_t bytes) {
    return Data{0xFF, 0xFB, 0x00, 0x64} + Data(bytes - 4, 0);
}

TEST(FreeFormatTest, IsDetectedFromThreeHeadersAtEqualDistancesEvenIfAFrameIsPadded) {
    EXPECT_TRUE(isFreeFormat(freeFrame(1306) + freeFrame(1306) + freeFrame(1306)));
    EXPECT_TRUE(isFreeFormat(freeFrame(1306) + freeFrame(1307) + freeFrame(1306)))
        << "must be detected although the second frame is padded";
    EXPECT_TRUE(isFreeFormat(freeFrame(1307) + freeFrame(1306) + freeFrame(1306)))
        << "must be detected although the first frame is padded";
}

TEST(FreeFormatTest, MayBeginWithAnInformationFrameThatHasABitRate) {
    const Data info = Data{0xFF, 0xFB, 0x90, 0x64} + Data(413, 0);
    EXPECT_TRUE(isFreeFormat(info + freeFrame(800) + freeFrame(800) + freeFrame(800)));
    EXPECT_FALSE(isFreeFormat(info + info + info));
}

TEST(FreeFormatTest, IsNotDetectedWithoutThreeHeadersAtEqualDistances) {
    EXPECT_FALSE(isFreeFormat({}));
    EXPECT_FALSE(isFreeFormat(freeFrame(500)));
    EXPECT_FALSE(isFreeFormat(freeFrame(500) + freeFrame(700) + freeFrame(900)));
    EXPECT_FALSE(isFreeFormat(Data(50'000, 0)));
}

TEST(FreeFormatTest, IsDetectedOnlyInFramesLargeEnoughForSound) {
    EXPECT_TRUE(isFreeFormat(freeFrame(36) + freeFrame(36) + freeFrame(36)));
    EXPECT_FALSE(isFreeFormat(freeFrame(35) + freeFrame(35) + freeFrame(35)));
    // Layer II headers at every fourth byte. Some pairs of them are far enough apart for a frame
    // with sound, but only the distance to the next header counts, and it is too small.
    Data headers;
    while (headers.size() < 8000) {
        headers = headers + Data{0xFF, 0xFD, 0x00, 0x00};
    }
    EXPECT_FALSE(isFreeFormat(headers));
}

} // namespace
} // namespace sonarith::mp3
