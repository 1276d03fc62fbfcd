// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/rate_converter.h"

namespace sonarith::sound {

Result<RateConverter> RateConverter::create(std::size_t channels, std::uint32_t fromRate,
                                            std::uint32_t toRate, RateQuality quality) {
    int error = RESAMPLER_ERR_SUCCESS;
    SpeexResamplerState* state = speex_resampler_init(static_cast<spx_uint32_t>(channels), fromRate,
                                                      toRate, static_cast<int>(quality), &error);
    if (state == nullptr) {
        return {ErrorNumber::deviceUnavailable,
                std::string("no rate conversion: ") + speex_resampler_strerror(error)};
    }
    return RateConverter(channels, state);
}

RateConverter::Progress RateConverter::convert(std::span<const std::int16_t> input,
                                               std::span<std::int16_t> output) {
    auto read = static_cast<spx_uint32_t>(input.size() / channels_);
    auto written = static_cast<spx_uint32_t>(output.size() / channels_);
    if (speex_resampler_process_interleaved_int(state_.get(), input.data(), &read, output.data(),
                                                &written) != RESAMPLER_ERR_SUCCESS) {
        return {};
    }
    return {read, written};
}

std::size_t RateConverter::latency() const {
    return static_cast<std::size_t>(speex_resampler_get_input_latency(state_.get()));
}

void RateConverter::skipLatency() {
    speex_resampler_skip_zeros(state_.get());
}

} // namespace sonarith::sound
