// SPDX-License-Identifier: GPL-3.0-or-later
// Generates sine waves as a source of the sound card, and measures the amplitude of one frequency
// in a signal.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <span>
#include <vector>

#include "platform/linux/sound/sample_source.h"

namespace sonarith::fakes {

/// Delivers a sine wave of the same frequency on both channels; the right channel has half the
/// amplitude of the left channel.
class ToneSource : public sound::SampleSource {
  public:
    ToneSource(double hz, double amplitude) : hz_(hz), amplitude_(amplitude) {}

    [[nodiscard]] sound::Pulled pull(std::span<sound::StereoFrame> block) override {
        for (sound::StereoFrame& frame : block) {
            const double angle =
                2 * std::numbers::pi * hz_ * static_cast<double>(position_++) / sound::frameRate;
            const double value = amplitude_ * std::sin(angle);
            frame = {static_cast<std::int16_t>(std::lround(value)),
                     static_cast<std::int16_t>(std::lround(value / 2))};
        }
        return {block.size(), sound::Supply::flowing};
    }

  private:
    double hz_;
    double amplitude_;
    std::int64_t position_ = 0;
};

/// The amplitude of the frequency `hz` in `samples`, whose length must be a whole number of
/// periods.
inline double amplitudeAt(const std::vector<double>& samples, double hz, double rate) {
    double sine = 0;
    double cosine = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double angle = 2 * std::numbers::pi * hz * static_cast<double>(i) / rate;
        sine += samples[i] * std::sin(angle);
        cosine += samples[i] * std::cos(angle);
    }
    return 2 * std::hypot(sine, cosine) / static_cast<double>(samples.size());
}

inline std::vector<double> leftOf(std::span<const sound::StereoFrame> frames) {
    std::vector<double> samples;
    for (const sound::StereoFrame& frame : frames) {
        samples.push_back(frame.left);
    }
    return samples;
}

inline std::vector<double> rightOf(std::span<const sound::StereoFrame> frames) {
    std::vector<double> samples;
    for (const sound::StereoFrame& frame : frames) {
        samples.push_back(frame.right);
    }
    return samples;
}

inline double decibels(double factor) {
    return 20 * std::log10(factor);
}

} // namespace sonarith::fakes
