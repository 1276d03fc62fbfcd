// SPDX-License-Identifier: GPL-3.0-or-later
// Calculates with samples: applies levels, clips sums to 16 bits, and computes the mean of both
// channels. The functions here use no lines and no devices.
#pragma once

#include <algorithm>
#include <cstdint>

#include "platform/linux/sound/sample_source.h"

namespace sonarith::sound {

/// The highest mixer level; the lowest is 0.
inline constexpr int fullVolume = 65535;

/// A frame with 32 bits per sample, so that a sum of lines does not overflow.
struct WideFrame {
    std::int32_t left = 0;
    std::int32_t right = 0;
};

/// Returns `value` * `level` / fullVolume, rounded to the nearest integer. `value` is a sample or a
/// sum of samples, and fits into 24 bits.
[[nodiscard]] constexpr std::int32_t atLevel(std::int32_t value, int level) {
    const std::int64_t scaled = std::int64_t{value} * level;
    const std::int64_t half = fullVolume / 2;
    return static_cast<std::int32_t>((scaled + (scaled < 0 ? -half : half)) / fullVolume);
}

/// The nearest 16-bit sample: a sum outside the range is clipped.
[[nodiscard]] constexpr std::int16_t saturated(std::int32_t value) {
    return static_cast<std::int16_t>(std::clamp<std::int32_t>(value, INT16_MIN, INT16_MAX));
}

[[nodiscard]] constexpr StereoFrame saturated(WideFrame frame) {
    return {saturated(frame.left), saturated(frame.right)};
}

/// The mean of both channels; a half is rounded toward zero, so that rounding causes no DC offset.
[[nodiscard]] constexpr std::int16_t meanOf(StereoFrame frame) {
    return static_cast<std::int16_t>((std::int32_t{frame.left} + frame.right) / 2);
}

} // namespace sonarith::sound
