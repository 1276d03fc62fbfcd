// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/wave_converter.h"

#include <algorithm>
#include <utility>

#include "platform/linux/sound/mixing.h"
#include "platform/linux/sound/peak_meter.h"
#include "platform/linux/sound/sound_card.h"

namespace sonarith::sound {

namespace {

constexpr std::uint16_t pcm = 1;
constexpr std::uint32_t lowestRate = 4000;
constexpr std::uint32_t highestRate = 192'000;

bool isOffered(const WaveFormat& format) {
    const unsigned block = format.nChannels * format.wBitsPerSample / 8U;
    return format.wFormatTag == pcm && (format.nChannels == 1 || format.nChannels == 2) &&
           (format.wBitsPerSample == 8 || format.wBitsPerSample == 16) &&
           format.nSamplesPerSec >= lowestRate && format.nSamplesPerSec <= highestRate &&
           format.nBlockAlign == block && format.nAvgBytesPerSec == format.nSamplesPerSec * block;
}

} // namespace

std::unique_ptr<WaveConverter> WaveConverter::create(const WaveFormat& format) {
    if (!isOffered(format)) {
        return nullptr;
    }
    std::optional<RateConverter> resampler;
    if (format.nSamplesPerSec != frameRate) {
        Result<RateConverter> created = RateConverter::create(
            format.nChannels, frameRate, format.nSamplesPerSec, RateQuality::measurement);
        if (!created.ok()) {
            return nullptr;
        }
        resampler = std::move(created.value());
    }
    return std::unique_ptr<WaveConverter>(new WaveConverter(format, std::move(resampler)));
}

WaveConverter::WaveConverter(const WaveFormat& format, std::optional<RateConverter> resampler)
    : channels_(format.nChannels),
      bytesPerSample_(format.wBitsPerSample / 8U),
      rate_(format.nSamplesPerSec),
      resampler_(std::move(resampler)),
      settledFrames_(resampler_ ? 2 * resampler_->latency() : 0),
      samples_(blockFrames * channels_) {
    // Two frames are added: one because the division rounds down, and one because the fractions of
    // a frame that earlier blocks have left can add up to a frame.
    const std::size_t most = (blockFrames * rate_ / frameRate + 2) * channels_;
    if (resampler_) {
        resampled_.resize(most);
    }
    bytes_.resize(most * bytesPerSample_);
}

std::span<const std::byte> WaveConverter::convert(std::span<const StereoFrame> frames) {
    bytesUsed_ = 0;
    frames = frames.first(std::min(frames.size(), blockFrames));
    if (resampler_ && isSettledSilence(frames)) {
        passSilence(frames.size());
        return std::span(bytes_).first(bytesUsed_);
    }
    std::size_t count = 0;
    for (const StereoFrame& frame : frames) {
        if (channels_ == 1) {
            samples_[count++] = meanOf(frame);
        } else {
            samples_[count++] = frame.left;
            samples_[count++] = frame.right;
        }
    }
    const auto samples = std::span<const std::int16_t>(samples_).first(count);
    if (resampler_) {
        resample(samples);
    } else {
        encode(samples);
    }
    return std::span(bytes_).first(bytesUsed_);
}

/// Whether these frames are silent and the resampler's filter contains only silence.
bool WaveConverter::isSettledSilence(std::span<const StereoFrame> frames) {
    if (peakOf(frames) != 0) {
        silentFrames_ = 0;
        return false;
    }
    const bool settled = silentFrames_ == settledFrames_;
    silentFrames_ = std::min(silentFrames_ + frames.size(), settledFrames_);
    return settled;
}

/// Produces silence without the resampler: resampling silence would take most of the processor time
/// that a silent card uses, and its result is known.
void WaveConverter::passSilence(std::size_t frames) {
    silentRemainder_ += std::uint64_t{frames} * rate_;
    const auto count = static_cast<std::size_t>(silentRemainder_ / frameRate) * channels_;
    silentRemainder_ %= frameRate;
    std::fill_n(resampled_.begin(), count, std::int16_t{0});
    encode(std::span(resampled_).first(count));
}

void WaveConverter::resample(std::span<const std::int16_t> samples) {
    const std::size_t made = resampler_->convert(samples, resampled_).written;
    encode(std::span(resampled_).first(made * channels_));
}

void WaveConverter::encode(std::span<const std::int16_t> samples) {
    for (const std::int16_t sample : samples) {
        const auto bits = static_cast<std::uint16_t>(sample);
        if (bytesPerSample_ == 1) {
            bytes_[bytesUsed_++] = static_cast<std::byte>((bits ^ 0x8000U) >> 8);
        } else {
            bytes_[bytesUsed_++] = static_cast<std::byte>(bits & 0xFFU);
            bytes_[bytesUsed_++] = static_cast<std::byte>(bits >> 8);
        }
    }
}

} // namespace sonarith::sound
