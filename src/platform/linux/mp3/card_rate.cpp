// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/card_rate.h"

namespace sonarith::mp3 {

Result<CardRate> CardRate::create(const PcmFormat& format) {
    if (format.rate == sound::frameRate) {
        return CardRate(format, nullptr);
    }
    int error = 0;
    SRC_STATE* state = src_new(SRC_SINC_FASTEST, format.channels, &error);
    if (state == nullptr) {
        return {ErrorNumber::deviceUnavailable,
                std::string("no rate conversion: ") + src_strerror(error)};
    }
    return CardRate(format, state);
}

std::span<const sound::StereoFrame> CardRate::convert(std::span<const std::int16_t> samples) {
    frames_.clear();
    if (state_) {
        resample(samples);
    } else {
        append(samples);
    }
    return frames_;
}

void CardRate::resample(std::span<const std::int16_t> samples) {
    // The space for one call of src_process; the loop below repeats the call until all samples are
    // converted.
    constexpr std::size_t outputFrames = 4096;
    const auto channels = static_cast<std::size_t>(format_.channels);
    input_.resize(samples.size());
    src_short_to_float_array(samples.data(), input_.data(), static_cast<int>(samples.size()));
    output_.resize(outputFrames * channels);
    SRC_DATA data{};
    data.data_in = input_.data();
    data.input_frames = static_cast<long>(samples.size() / channels);
    data.data_out = output_.data();
    data.output_frames = static_cast<long>(outputFrames);
    data.end_of_input = samples.empty() ? 1 : 0;
    data.src_ratio = static_cast<double>(sound::frameRate) / format_.rate;
    do {
        if (src_process(state_.get(), &data) != 0) {
            return;
        }
        const auto count = static_cast<std::size_t>(data.output_frames_gen) * channels;
        resampled_.resize(count);
        src_float_to_short_array(output_.data(), resampled_.data(), static_cast<int>(count));
        append(resampled_);
        data.data_in += static_cast<std::size_t>(data.input_frames_used) * channels;
        data.input_frames -= data.input_frames_used;
    } while (data.input_frames_used > 0 || data.output_frames_gen > 0);
}

void CardRate::append(std::span<const std::int16_t> samples) {
    if (format_.channels == 1) {
        for (const std::int16_t sample : samples) {
            frames_.push_back({sample, sample});
        }
        return;
    }
    for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
        frames_.push_back({samples[i], samples[i + 1]});
    }
}

} // namespace sonarith::mp3
