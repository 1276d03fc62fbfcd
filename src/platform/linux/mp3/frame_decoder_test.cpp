// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/frame_decoder.h"

#include <gmock/gmock.h>

#include "platform/linux/mp3/mp3_fixture.h"

namespace sonarith::mp3 {
namespace {

using fixture::Data;
using testing::Each;

template <typename Sample>
FrameDecoder<Sample> newDecoder() {
    Result<FrameDecoder<Sample>> decoder = FrameDecoder<Sample>::create();
    EXPECT_TRUE(decoder.ok());
    return std::move(decoder.value());
}

Data bytesOf(const Data& stream, const Frame& frame) {
    const auto begin = static_cast<std::size_t>(frame.offset);
    return fixture::part(stream, begin, begin + static_cast<std::size_t>(frame.header.bytes));
}

TEST(FrameDecoderTest, ReturnsAllSamplesOfEachFrameInOneCall) {
    for (const Data& stream : {fixture::ordinary(), fixture::encoded(22050, 1, "-b 32"),
                               fixture::layer1(5), fixture::layer2(5)}) {
        FrameDecoder<std::int16_t> decoder = newDecoder<std::int16_t>();
        int sounding = 0;
        for (const NumberedFrame& frame : fixture::framesOf(stream)) {
            const auto samples = decoder.decode(frame, bytesOf(stream, frame));
            const StreamFormat& format = frame.header.format;
            ASSERT_EQ(samples.size(),
                      static_cast<std::size_t>(format.samplesPerFrame() * format.channels));
            sounding += std::any_of(samples.begin(), samples.end(), [](int s) { return s != 0; });
        }
        EXPECT_GE(sounding, 5);
    }
}

TEST(FrameDecoderTest, SilencesFramesThatNeedMissingDataOfEarlierFrames) {
    const Data& stream = fixture::ordinary();
    const auto frames = fixture::framesOf(stream);
    FrameDecoder<std::int16_t> decoder = newDecoder<std::int16_t>();
    constexpr std::size_t first = 120; // in the noise of the test sound
    for (std::size_t i = first; i < first + 10; ++i) {
        Frame frame = frames[i];
        frame.afterGap = i == first;
        const Data bytes = bytesOf(stream, frame);
        ASSERT_TRUE(i != first || mainDataBegin(frame.header, bytes) > 0)
            << "frame 120 of the test sound must need data of earlier frames";
        const auto samples = decoder.decode(frame, bytes);
        if (i == first) {
            EXPECT_THAT(samples, Each(0));
            EXPECT_TRUE(decoder.silencedLast());
        }
    }
    EXPECT_FALSE(decoder.silencedLast());
    EXPECT_GE(decoder.silencedFrames(), 1);
}

TEST(FrameDecoderTest, ReturnsZerosForInvalidFrames) {
    FrameDecoder<std::int16_t> decoder = newDecoder<std::int16_t>();
    const auto frames = fixture::framesOf(fixture::ordinary());
    const auto samples = decoder.decode(frames[0], Data(417, 0));
    EXPECT_EQ(samples.size(), 2304U);
    EXPECT_THAT(samples, Each(0));
}

TEST(FrameDecoderTest, ReturnsTheSameSoundInFloatingPointSamplesAsIn16BitSamples) {
    const Data& stream = fixture::ordinary();
    FrameDecoder<float> fine = newDecoder<float>();
    FrameDecoder<std::int16_t> coarse = newDecoder<std::int16_t>();
    const auto frames = fixture::framesOf(stream);
    ASSERT_FALSE(frames.empty());
    for (const NumberedFrame& frame : frames) {
        const Data bytes = bytesOf(stream, frame);
        const auto a = fine.decode(frame, bytes);
        const auto b = coarse.decode(frame, bytes);
        ASSERT_EQ(a.size(), 2304U);
        ASSERT_EQ(a.size(), b.size());
        for (std::size_t i = 0; i < a.size(); ++i) {
            ASSERT_NEAR(std::clamp(a[i], -1.0F, 1.0F) * 32768, b[i], 2);
        }
    }
}

} // namespace
} // namespace sonarith::mp3
