// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/card_rate.h"

#include <gmock/gmock.h>

#include <cmath>

namespace sonarith::mp3 {
namespace {

using sound::StereoFrame;

std::vector<StereoFrame> converted(const PcmFormat& format,
                                   const std::vector<std::int16_t>& samples) {
    Result<CardRate> rate = CardRate::create(format);
    EXPECT_TRUE(rate.ok());
    std::vector<StereoFrame> frames;
    const std::size_t step = 1000 * static_cast<std::size_t>(format.channels);
    for (std::size_t i = 0; i < samples.size(); i += step) {
        const auto part =
            rate.value().convert(std::span(samples).subspan(i, std::min(step, samples.size() - i)));
        frames.insert(frames.end(), part.begin(), part.end());
    }
    const auto rest = rate.value().convert({});
    frames.insert(frames.end(), rest.begin(), rest.end());
    return frames;
}

TEST(CardRateTest, KeepsTheSamplesOfSoundAtTheCardsRateAndCopiesMonoToBothChannels) {
    EXPECT_EQ(converted({44100, 2}, {1, 2, 3, -4}), (std::vector<StereoFrame>{{1, 2}, {3, -4}}));
    EXPECT_EQ(converted({44100, 1}, {1, -2}), (std::vector<StereoFrame>{{1, 1}, {-2, -2}}));
}

TEST(CardRateTest, KeepsTheLengthAndThePitchOfSoundAtOtherRates) {
    for (const int rate : {8000, 11025, 22050, 32000, 48000}) {
        for (const int channels : {1, 2}) {
            std::vector<std::int16_t> samples;
            for (int i = 0; i < rate; ++i) { // 1 s of 500 Hz; the right channel of stereo is silent
                const double tone = std::sin(2 * M_PI * 500 * i / rate);
                samples.push_back(static_cast<std::int16_t>(20'000 * tone));
                samples.resize(samples.size() + static_cast<std::size_t>(channels - 1));
            }
            const auto frames = converted({rate, channels}, samples);
            EXPECT_NEAR(static_cast<double>(frames.size()), 44100, 2) << rate << " Hz";
            int rising = 0;
            for (std::size_t i = 1; i < frames.size(); ++i) {
                rising += frames[i - 1].left < 0 && frames[i].left >= 0 ? 1 : 0;
                ASSERT_NEAR(frames[i].right, channels == 1 ? frames[i].left : 0, 1);
            }
            EXPECT_NEAR(rising, 500, 1) << rate << " Hz";
        }
    }
}

} // namespace
} // namespace sonarith::mp3
