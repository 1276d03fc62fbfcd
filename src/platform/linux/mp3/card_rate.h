// SPDX-License-Identifier: GPL-3.0-or-later
// Converts sound of any rate, mono or stereo, to the format of the sound card's lines. Sound at the
// card's rate is not resampled.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "platform/linux/mp3/pcm_reader.h"
#include "platform/linux/sound/rate_converter.h"
#include "platform/linux/sound/sample_source.h"
#include "platform/result.h"

namespace sonarith::mp3 {

class CardRate {
  public:
    [[nodiscard]] static Result<CardRate> create(const PcmFormat& format);

    /// Converts the next samples (interleaved, whole frames). An empty span marks the end of the
    /// sound: the call then returns the remaining output of the converter. The result is valid
    /// until the next call.
    [[nodiscard]] std::span<const sound::StereoFrame>
    convert(std::span<const std::int16_t> samples);

  private:
    CardRate(const PcmFormat& format, std::optional<sound::RateConverter> converter)
        : format_(format), converter_(std::move(converter)) {}
    void resample(std::span<const std::int16_t> samples);
    void append(std::span<const std::int16_t> samples);

    PcmFormat format_;
    std::optional<sound::RateConverter> converter_; ///< empty if the sound has the card's rate
    std::vector<std::int16_t> resampled_;
    std::vector<sound::StereoFrame> frames_;
};

} // namespace sonarith::mp3
