// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/rate_converter.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "support/tones.h"

namespace sonarith::sound {
namespace {

constexpr double amplitude = 20'000;

std::vector<std::int16_t> tone(double hz, std::uint32_t rate, std::size_t samples) {
    std::vector<std::int16_t> result;
    for (std::size_t i = 0; i < samples; ++i) {
        const double phase = 2 * M_PI * hz * static_cast<double>(i) / rate;
        result.push_back(static_cast<std::int16_t>(std::lround(amplitude * std::sin(phase))));
    }
    return result;
}

/// Converts two seconds of a tone as mono sound. Returns the last half second of the result.
std::vector<double> convertedTone(double hz, std::uint32_t from, std::uint32_t to,
                                  RateQuality quality) {
    Result<RateConverter> converter = RateConverter::create(1, from, to, quality);
    EXPECT_TRUE(converter.ok());
    std::vector<std::int16_t> output(2 * to + 2);
    const std::size_t written = converter.value().convert(tone(hz, from, 2 * from), output).written;
    EXPECT_NEAR(static_cast<double>(written), 2.0 * to, 1);
    return {output.begin() + static_cast<std::ptrdiff_t>(written - to / 2),
            output.begin() + static_cast<std::ptrdiff_t>(written)};
}

double largest(const std::vector<double>& samples) {
    double result = 0;
    for (const double sample : samples) {
        result = std::max(result, std::abs(sample));
    }
    return result;
}

TEST(RateConverter, FailsForARateOfZero) {
    const Result<RateConverter> refused =
        RateConverter::create(2, 44'100, 0, RateQuality::listening);
    ASSERT_FALSE(refused.ok());
    EXPECT_THAT(refused.error().text, testing::StartsWith("no rate conversion: "));
}

TEST(RateConverter, KeepsTheLevelOfATone) {
    for (const RateQuality quality : {RateQuality::measurement, RateQuality::listening}) {
        for (const std::uint32_t to : {8000U, 44'100U}) {
            const auto samples = convertedTone(1000, 48'000, to, quality);
            EXPECT_NEAR(fakes::amplitudeAt(samples, 1000, to), amplitude, 0.005 * amplitude);
        }
    }
}

TEST(RateConverter, KeepsAToneOf18KilohertzInTheQualityForListening) {
    const auto samples = convertedTone(18'000, 48'000, 44'100, RateQuality::listening);
    EXPECT_NEAR(fakes::amplitudeAt(samples, 18'000, 44'100), amplitude, 0.02 * amplitude);
}

TEST(RateConverter, RemovesFrequenciesThatTheNewRateCannotRepresent) {
    // 0.1 % of the amplitude is -60 dB. Without a filter, the result would be a tone of another
    // frequency.
    EXPECT_LT(largest(convertedTone(7000, 44'100, 8000, RateQuality::measurement)),
              0.001 * amplitude);
    EXPECT_LT(largest(convertedTone(30'000, 96'000, 44'100, RateQuality::listening)),
              0.001 * amplitude);
}

TEST(RateConverter, ContinuesInTheNextCallWithoutAGapIfTheOutputIsFull) {
    const std::vector<std::int16_t> input = tone(440, 48'000, 2000); // 1000 frames
    Result<RateConverter> whole = RateConverter::create(2, 48'000, 44'100, RateQuality::listening);
    Result<RateConverter> parts = RateConverter::create(2, 48'000, 44'100, RateQuality::listening);
    std::vector<std::int16_t> expected(2 * 1000);
    expected.resize(2 * whole.value().convert(input, expected).written);
    std::vector<std::int16_t> result;
    std::vector<std::int16_t> part(2 * 100);
    for (std::size_t read = 0; read < 1000;) {
        const auto progress = parts.value().convert(std::span(input).subspan(2 * read), part);
        ASSERT_GT(progress.read, 0U);
        read += progress.read;
        result.insert(result.end(), part.begin(),
                      part.begin() + static_cast<std::ptrdiff_t>(2 * progress.written));
    }
    EXPECT_EQ(result, expected);
}

TEST(RateConverter, DelaysSoundByItsLatencyUnlessTheLatencyIsSkipped) {
    const auto peakAt = [](bool skip) {
        Result<RateConverter> converter =
            RateConverter::create(1, 22'050, 44'100, RateQuality::listening);
        if (skip) {
            converter.value().skipLatency();
        }
        std::vector<std::int16_t> impulse(1000);
        impulse[100] = 30'000;
        std::vector<std::int16_t> output(2010);
        static_cast<void>(converter.value().convert(impulse, output));
        const auto peak = std::max_element(output.begin(), output.end()) - output.begin();
        return std::pair(peak, static_cast<std::ptrdiff_t>(converter.value().latency()));
    };
    const auto [peak, latency] = peakAt(false);
    EXPECT_GT(latency, 0);
    EXPECT_EQ(peak, 2 * (100 + latency));
    EXPECT_EQ(peakAt(true).first, 2 * 100);
}

} // namespace
} // namespace sonarith::sound
