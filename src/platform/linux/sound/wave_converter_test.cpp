// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/wave_converter.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

#include "platform/linux/sound/sound_card.h"
#include "support/tones.h"
#include "support/wave_formats.h"

namespace sonarith::sound {
namespace {

using fakes::pcmFormat;
using testing::ElementsAre;

using Frames = std::vector<StereoFrame>;

std::vector<int> numbers(std::span<const std::byte> bytes) {
    std::vector<int> result;
    for (const std::byte byte : bytes) {
        result.push_back(std::to_integer<int>(byte));
    }
    return result;
}

const Frames& exampleFrames() {
    static const Frames frames{{0, 0}, {32767, 32767}, {-32768, -32768}, {256, -256}, {0x1234, 3}};
    return frames;
}

TEST(WaveConverter, KeepsTheSamplesBitForBitInTheCardsOwnFormat) {
    const auto converter = WaveConverter::create(pcmFormat(2, 44100, 16));
    EXPECT_EQ(converter->frameBytes(), 4U);
    EXPECT_THAT(numbers(converter->convert(exampleFrames())),
                ElementsAre(0, 0, 0, 0, 0xFF, 0x7F, 0xFF, 0x7F, 0, 0x80, 0, 0x80, 0, 1, 0, 0xFF,
                            0x34, 0x12, 3, 0));
}

TEST(WaveConverter, ProducesUnsignedSamplesOf8Bits) {
    const auto converter = WaveConverter::create(pcmFormat(2, 44100, 8));
    EXPECT_THAT(numbers(converter->convert(exampleFrames())),
                ElementsAre(128, 128, 255, 255, 0, 0, 129, 127, 128 + 0x12, 128));
}

TEST(WaveConverter, ProducesTheMeanOfBothChannelsForMono) {
    const auto converter = WaveConverter::create(pcmFormat(1, 44100, 8));
    EXPECT_EQ(converter->frameBytes(), 1U);
    EXPECT_THAT(numbers(converter->convert(exampleFrames())),
                ElementsAre(128, 255, 0, 128, 128 + 0x09));
}

TEST(WaveConverter, RejectsUnsupportedAndInconsistentFormats) {
    EXPECT_NE(WaveConverter::create(pcmFormat(1, 8000, 8)), nullptr);
    EXPECT_NE(WaveConverter::create(pcmFormat(2, 192'000, 16)), nullptr);
    EXPECT_EQ(WaveConverter::create({}), nullptr);
    EXPECT_EQ(WaveConverter::create(pcmFormat(0, 8000, 8)), nullptr);
    EXPECT_EQ(WaveConverter::create(pcmFormat(3, 8000, 8)), nullptr);
    EXPECT_EQ(WaveConverter::create(pcmFormat(1, 8000, 24)), nullptr);
    EXPECT_EQ(WaveConverter::create(pcmFormat(1, 3999, 8)), nullptr);
    EXPECT_EQ(WaveConverter::create(pcmFormat(1, 192'001, 8)), nullptr);
    WaveFormat format = pcmFormat(1, 8000, 8);
    format.wFormatTag = 3;
    EXPECT_EQ(WaveConverter::create(format), nullptr);
    format = pcmFormat(1, 8000, 8);
    format.nBlockAlign = 2;
    EXPECT_EQ(WaveConverter::create(format), nullptr);
    format = pcmFormat(1, 8000, 8);
    format.nAvgBytesPerSec = 16'000;
    EXPECT_EQ(WaveConverter::create(format), nullptr);
}

class WaveConverterRate : public testing::TestWithParam<std::uint32_t> {};

TEST_P(WaveConverterRate, KeepsLengthAndLevelOfATone) {
    constexpr double hz = 500;
    const auto converter = WaveConverter::create(pcmFormat(2, GetParam(), 16));
    fakes::ToneSource tone(hz, 20'000);
    Frames block(blockFrames);
    std::vector<std::byte> sound;
    for (int i = 0; i < 300; ++i) { // three seconds
        ASSERT_EQ(tone.pull(block).frames, blockFrames);
        const auto part = converter->convert(block);
        sound.insert(sound.end(), part.begin(), part.end());
    }
    const std::size_t frames = sound.size() / 4;
    EXPECT_NEAR(static_cast<double>(frames), 3.0 * GetParam(), 0.02 * GetParam());
    std::vector<double> left;
    std::vector<double> right;
    for (std::size_t i = frames - GetParam(); i < frames; ++i) { // the last second
        const auto sample = [&](std::size_t at) {
            return static_cast<std::int16_t>(std::to_integer<int>(sound[at]) |
                                             std::to_integer<int>(sound[at + 1]) << 8);
        };
        left.push_back(sample(4 * i));
        right.push_back(sample(4 * i + 2));
    }
    EXPECT_NEAR(fakes::amplitudeAt(left, hz, GetParam()), 20'000, 200);
    EXPECT_NEAR(fakes::amplitudeAt(right, hz, GetParam()), 10'000, 100);
}

INSTANTIATE_TEST_SUITE_P(Rates, WaveConverterRate,
                         testing::Values(4000, 8000, 11'025, 44'099, 48'000, 192'000));

/// Converts a sound to `format` and returns the bytes. The sound is `silentBlocks` blocks of
/// silence, one second of a tone, and ten blocks of silence.
std::vector<int> convertedTone(const WaveFormat& format, int silentBlocks) {
    const auto converter = WaveConverter::create(format);
    fakes::ToneSource tone(500, 20'000);
    const Frames silence(blockFrames);
    Frames block(blockFrames);
    std::vector<int> result;
    const auto add = [&](const Frames& frames) {
        for (const int number : numbers(converter->convert(frames))) {
            result.push_back(number);
        }
    };
    for (int i = 0; i < silentBlocks; ++i) {
        add(silence);
    }
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(tone.pull(block).frames, blockFrames);
        add(block);
    }
    for (int i = 0; i < 10; ++i) {
        add(silence);
    }
    return result;
}

TEST(WaveConverter, ASoundBecomesTheSameBytesAfterAShortAndAfterALongSilence) {
    // At these rates a block is converted to a whole number of frames, so the silence before a
    // sound does not shift the sound by a fraction of a frame.
    for (const WaveFormat& format : {pcmFormat(1, 8000, 8), pcmFormat(2, 48'000, 16)}) {
        const auto frames = [&](int blocks) {
            return static_cast<std::size_t>(blocks) * format.nSamplesPerSec / 100 *
                   format.nBlockAlign;
        };
        const std::vector<int> soon = convertedTone(format, 1);
        const std::vector<int> late = convertedTone(format, 101);
        ASSERT_EQ(late.size(), soon.size() + frames(100));
        EXPECT_TRUE(std::equal(soon.begin(), soon.end(),
                               late.end() - static_cast<std::ptrdiff_t>(soon.size())));
        const int silent = format.wBitsPerSample == 8 ? 128 : 0;
        EXPECT_EQ(
            std::count(late.begin(), late.end() - static_cast<std::ptrdiff_t>(soon.size()), silent),
            static_cast<std::ptrdiff_t>(frames(100)));
    }
}

TEST(WaveConverter, DeliversTheSameEndOfAToneInOneOrManySilentBlocks) {
    // The end of the tone is still in the converter's filter when the silence begins. This test
    // uses the lowest rate, 4000 Hz, because the filter is longest at this rate.
    const auto endOfTone = [](std::size_t silentBlock) {
        const auto converter = WaveConverter::create(pcmFormat(1, 4000, 16));
        fakes::ToneSource tone(500, 20'000);
        Frames block(blockFrames);
        for (int i = 0; i < 100; ++i) {
            EXPECT_EQ(tone.pull(block).frames, blockFrames);
            static_cast<void>(converter->convert(block));
        }
        std::vector<int> result;
        for (std::size_t frames = 0; frames < blockFrames; frames += silentBlock) {
            for (const int number : numbers(converter->convert(Frames(silentBlock)))) {
                result.push_back(number);
            }
        }
        return result;
    };
    const std::vector<int> atOnce = endOfTone(blockFrames);
    EXPECT_GT(std::count_if(atOnce.begin(), atOnce.end(), [](int byte) { return byte != 0; }), 20);
    EXPECT_EQ(endOfTone(21), atOnce);
}

TEST(WaveConverter, ConvertsSilenceAtTheRateOfTheFormat) {
    for (const std::uint32_t rate : {4000U, 11'025U, 44'099U, 192'000U}) {
        const auto converter = WaveConverter::create(pcmFormat(2, rate, 16));
        std::size_t bytes = 0;
        for (int i = 0; i < 500; ++i) { // five seconds
            bytes += converter->convert(Frames(blockFrames)).size();
        }
        EXPECT_NEAR(static_cast<double>(bytes) / 4, 5.0 * rate, 300) << rate << " Hz";
    }
}

TEST(WaveConverter, RemovesFrequenciesThatTheRateCannotRepresent) {
    const auto converter = WaveConverter::create(pcmFormat(1, 8000, 8));
    fakes::ToneSource tone(7000, 20'000);
    Frames block(blockFrames);
    int lowest = 255;
    int highest = 0;
    for (int i = 0; i < 100; ++i) {
        ASSERT_EQ(tone.pull(block).frames, blockFrames);
        for (const int number : numbers(converter->convert(block))) {
            if (i >= 10) {
                lowest = std::min(lowest, number);
                highest = std::max(highest, number);
            }
        }
    }
    EXPECT_GE(lowest, 126);
    EXPECT_LE(highest, 130);
}

} // namespace
} // namespace sonarith::sound
