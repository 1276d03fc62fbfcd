// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/broken_frame_check.h"

#include <gmock/gmock.h>

#include "platform/linux/mp3/bit_reservoir.h"
#include "platform/linux/mp3/mp3_fixture.h"

namespace sonarith::mp3 {
namespace {

using fixture::Data;
using testing::Each;
using testing::ElementsAreArray;

/// How many frames of the stream the check considers broken.
int brokenFrames(const Data& data) {
    FrameDecoder<std::int16_t> decoder = std::move(FrameDecoder<std::int16_t>::create().value());
    BrokenFrameCheck check;
    int broken = 0;
    for (const NumberedFrame& frame : fixture::framesOf(data)) {
        const auto begin = static_cast<std::size_t>(frame.offset);
        const Data bytes =
            fixture::part(data, begin, begin + static_cast<std::size_t>(frame.header.bytes));
        broken += check.isBroken(frame, bytes, decoder.decode(frame, bytes)) ? 1 : 0;
        check.pass(frame, bytes);
    }
    return broken;
}

TEST(BrokenFrameCheckTest, TreatsNoIntactFrameAsBroken) {
    // At 8 kbit/s many frames contain data but no sound. Their samples end in silence, like those
    // of broken frames.
    for (const char* options : {"-b 128", "-V 2", "-b 8 --resample 24", "-p -b 8 --resample 24",
                                "-b 8 --resample 8", "-b 64 --resample 22.05"}) {
        EXPECT_EQ(brokenFrames(fixture::encoded(44100, 2, options, 1.5)), 0) << options;
        EXPECT_EQ(brokenFrames(fixture::encoded(44100, 1, options, 1.5)), 0) << options;
    }
}

TEST(BrokenFrameCheckTest, FindsFramesThatTheLibraryCannotDecode) {
    for (const char* options : {"-b 128", "-b 64 --resample 22.05"}) {
        Data data = fixture::encoded(44100, 2, options);
        const auto frames = fixture::framesOf(data);
        int damaged = 0;
        for (const std::size_t number : {30U, 50U, 51U, 120U}) {
            const Frame& frame = frames[number];
            const auto at = static_cast<std::size_t>(frame.offset);
            // Sets window switching together with the normal window type. This combination is
            // invalid, so no decoder can decode the frame.
            const bool isMpeg1 = frame.header.format.version == MpegVersion::mpeg1;
            const int bit = isMpeg1 ? 20 + 33 : 10 + 38;
            const std::size_t byte = at + frame.header.sideInfoOffset();
            for (int i = 0; i < 3; ++i) {
                auto& target = data[byte + static_cast<std::size_t>((bit + i) / 8)];
                const auto mask = static_cast<std::uint8_t>(0x80 >> (bit + i) % 8);
                target = static_cast<std::uint8_t>(i == 0 ? target | mask : target & ~mask);
            }
            ++damaged;
        }
        EXPECT_EQ(brokenFrames(data), damaged) << options;
    }
}

TEST(BrokenFrameCheckTest, SoundingFrameReturnsAnAudibleFrameThatEndsWithTheGivenReservoir) {
    for (const Data& like : {Data{0xFF, 0xFA, 0x92, 0x64}, Data{0xFF, 0xFB, 0x14, 0xC4},
                             Data{0xFF, 0xF2, 0x14, 0x64}, Data{0xFF, 0xE3, 0x18, 0xC4}}) {
        const FrameHeader original = *parseHeader(like);
        const auto most = static_cast<std::size_t>(original.format.maxReservoirBytes());
        const Data reservoir = fixture::junk(most);
        const Data frame = soundingFrame(like, reservoir);
        const auto header = parseHeader(frame);
        ASSERT_TRUE(header);
        EXPECT_EQ(header->format, original.format);
        EXPECT_EQ(frame.size(), static_cast<std::size_t>(header->bytes));
        EXPECT_EQ(fixture::part(frame, frame.size() - most, frame.size()), reservoir);
        FrameDecoder<float> decoder = std::move(FrameDecoder<float>::create().value());
        const auto samples = decoder.decode({0, *header, true}, frame);
        EXPECT_GT(*std::max_element(samples.begin(), samples.end()), 0.1F);
        EXPECT_FALSE(decoder.silencedLast());
    }
}

} // namespace
} // namespace sonarith::mp3
