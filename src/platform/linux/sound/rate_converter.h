// SPDX-License-Identifier: GPL-3.0-or-later
// Converts 16-bit sound from one sample rate to another, through libspeexdsp. The result is
// band-limited.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "platform/linux/late/speexdsp.h"
#include "platform/result.h"

namespace sonarith::sound {

/// The quality of a conversion. A higher quality has a wider passband and needs more processor
/// time.
enum class RateQuality {
    measurement = SPEEX_RESAMPLER_QUALITY_VOIP, ///< for sound that is measured, not heard
    listening = SPEEX_RESAMPLER_QUALITY_DESKTOP
};

class RateConverter {
  public:
    /// `channels` is 1 or 2, the rates are in Hz. Fails if the library refuses a parameter, or if
    /// memory is short.
    [[nodiscard]] static Result<RateConverter> create(std::size_t channels, std::uint32_t fromRate,
                                                      std::uint32_t toRate, RateQuality quality);

    /// What one call has read and written, in frames.
    struct Progress {
        std::size_t read = 0;
        std::size_t written = 0;
    };

    /// Converts whole frames of interleaved samples until `input` is read or `output` is full.
    /// Never allocates.
    [[nodiscard]] Progress convert(std::span<const std::int16_t> input,
                                   std::span<std::int16_t> output);

    /// By how many input frames the output is late. The filter extends over twice as many frames.
    [[nodiscard]] std::size_t latency() const;

    /// Omits the output that precedes the first input frame. Called before the first conversion.
    void skipLatency();

  private:
    struct Close {
        void operator()(SpeexResamplerState* state) const { speex_resampler_destroy(state); }
    };
    RateConverter(std::size_t channels, SpeexResamplerState* state)
        : channels_(channels), state_(state) {}

    std::size_t channels_;
    std::unique_ptr<SpeexResamplerState, Close> state_;
};

} // namespace sonarith::sound
