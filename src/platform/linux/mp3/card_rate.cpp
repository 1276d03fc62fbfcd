// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/card_rate.h"

#include <utility>

namespace sonarith::mp3 {

Result<CardRate> CardRate::create(const PcmFormat& format) {
    if (format.rate == sound::frameRate) {
        return CardRate(format, std::nullopt);
    }
    Result<sound::RateConverter> converter = sound::RateConverter::create(
        static_cast<std::size_t>(format.channels), static_cast<std::uint32_t>(format.rate),
        sound::frameRate, sound::RateQuality::listening);
    if (!converter.ok()) {
        return converter.error();
    }
    converter.value().skipLatency();
    return CardRate(format, std::move(converter.value()));
}

std::span<const sound::StereoFrame> CardRate::convert(std::span<const std::int16_t> samples) {
    frames_.clear();
    if (!converter_) {
        append(samples);
    } else if (samples.empty()) {
        // The filter still contains the last frames of the sound. Silence as further input makes
        // the filter return them.
        const std::vector<std::int16_t> silence(converter_->latency() *
                                                static_cast<std::size_t>(format_.channels));
        resample(silence);
    } else {
        resample(samples);
    }
    return frames_;
}

void CardRate::resample(std::span<const std::int16_t> samples) {
    // The most frames that one call of converter_->convert() writes. The loop repeats the call.
    constexpr std::size_t outputFrames = 4096;
    const auto channels = static_cast<std::size_t>(format_.channels);
    resampled_.resize(outputFrames * channels);
    while (!samples.empty()) {
        const auto [read, written] = converter_->convert(samples, resampled_);
        if (read == 0 && written == 0) {
            return;
        }
        append(std::span(resampled_).first(written * channels));
        samples = samples.subspan(read * channels);
    }
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
