// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/preroll_history.h"

#include <gmock/gmock.h>

#include "platform/linux/mp3/mp3_fixture.h"

namespace sonarith::mp3 {
namespace {

/// A history of `count` consecutive frames, each with the header `header`.
PrerollHistory historyOf(std::vector<std::uint8_t> header, std::int64_t count) {
    PrerollHistory history;
    NumberedFrame frame;
    frame.header = *parseHeader(header);
    for (std::int64_t i = 0; i < count; ++i) {
        frame.number = i;
        frame.offset = i * frame.header.bytes;
        history.add(frame);
    }
    return history;
}

TEST(PrerollHistoryTest, StartsTheDecoderAtLeastTwentyFourFramesEarlyAtAMultipleOfEight) {
    const PrerollHistory history = historyOf({0xFF, 0xFB, 0x90, 0x64}, 1001);
    EXPECT_EQ(history.before(1000).frame, 976);
    EXPECT_EQ(history.before(1000).offset, 976 * 417);
    EXPECT_EQ(history.before(999).frame, 968);
    EXPECT_EQ(history.before(1001).frame, 976);
}

TEST(PrerollHistoryTest, StartsTheDecoderAtTheFirstFrameOfTheStreamIfThatIsNear) {
    const PrerollHistory history = historyOf({0xFF, 0xFB, 0x90, 0x64}, 30);
    for (const std::int64_t frame : {0, 1, 24, 29}) {
        EXPECT_EQ(history.before(frame).frame, 0) << frame;
    }
}

TEST(PrerollHistoryTest, StartsTheDecoderEarlierIfTheReservoirRequiresIt) {
    // MPEG-2, 8 kbit/s, stereo: each frame has three bytes of main data. A frame may refer to the
    // 255 bytes of main data before it, which are the main data of 85 frames. The last 8 frames
    // before the requested frame must be decoded without loss (soundFrames in preroll_history.cpp),
    // so the 85 frames are counted back from the first of these 8.
    const PrerollHistory low = historyOf({0xFF, 0xF3, 0x14, 0x64}, 1001);
    EXPECT_EQ(low.before(1000).frame, 904);
    EXPECT_LE(low.before(1000).frame, 1000 - 8 - 85);
    // With a checksum, one byte of each frame is main data: the worst case.
    const PrerollHistory least = historyOf({0xFF, 0xF2, 0x14, 0x64}, 1001);
    EXPECT_EQ(least.before(1000).frame, 736);
    EXPECT_LE(least.before(1000).frame, 1000 - 8 - 255);
    for (std::int64_t frame = 993; frame <= 1001; ++frame) {
        EXPECT_EQ(least.before(frame).frame % 8, 0);
        EXPECT_LE(least.before(frame).frame, frame - 8 - 255);
    }
}

} // namespace
} // namespace sonarith::mp3
