// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/tone_control.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace sonarith::sound {

namespace {

constexpr std::size_t chunkFrames = 128;

/// How fast an attenuated sound recovers. This is slow compared with low tones: at 50 Hz, peaks are
/// 10 ms apart, and the gain changes by no more than 0.1 dB between them.
constexpr double recoveryDbPerSecond = 10;
const double recoveryForEachFrame = std::pow(10.0, recoveryDbPerSecond / 20 / frameRate);

} // namespace

void ToneControl::restart() {
    low_.restart(gainDb(bass_));
    high_.restart(gainDb(treble_));
    reduction_ = 1;
}

void ToneControl::apply(std::span<WideFrame> frames) {
    const double bassDb = gainDb(bass_);
    const double trebleDb = gainDb(treble_);
    std::array<FilterFrame, chunkFrames> chunk;
    while (!frames.empty()) {
        const bool filtering =
            bassDb != 0 || trebleDb != 0 || !low_.isTransparent() || !high_.isTransparent();
        if (!filtering && reduction_ == 1) {
            return;
        }
        const auto part = frames.first(std::min(frames.size(), chunkFrames));
        frames = frames.subspan(part.size());
        const auto wide = std::span(chunk).first(part.size());
        std::transform(part.begin(), part.end(), wide.begin(), [](const WideFrame& frame) {
            return FilterFrame{static_cast<double>(frame.left), static_cast<double>(frame.right)};
        });
        if (filtering) {
            low_.filter(wide, bassDb);
            high_.filter(wide, trebleDb);
        }
        limit(wide, part, filtering);
    }
}

/// If `filtering` (`frames` were filtered), a peak that does not fit into 16 bits attenuates the
/// sound. Otherwise (bass and treble are neutral) the sound only recovers from earlier attenuation,
/// and the caller of apply() clips a sum of lines that is too loud.
void ToneControl::limit(std::span<FilterFrame> frames, std::span<WideFrame> out, bool filtering) {
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const FilterFrame& frame = frames[i];
        const double loudest = std::max(std::abs(frame.left), std::abs(frame.right));
        if (filtering && loudest * reduction_ > INT16_MAX) {
            reduction_ = INT16_MAX / loudest;
        }
        out[i] = {static_cast<std::int32_t>(std::lrint(frame.left * reduction_)),
                  static_cast<std::int32_t>(std::lrint(frame.right * reduction_))};
        reduction_ = std::min(1.0, reduction_ * recoveryForEachFrame);
    }
}

} // namespace sonarith::sound
