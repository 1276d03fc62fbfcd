// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/wave_converter.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/linux/sound/mixing.h"
#include "platform/linux/sound/peak_meter.h"
#include "platform/linux/sound/sound_card.h"

namespace sonarith::sound {

namespace {

constexpr std::uint16_t pcm = 1;
constexpr std::uint32_t lowestRate = 4000;
constexpr std::uint32_t highestRate = 192'000;

/// Frames that the rate converter may hold back and deliver with a later block.
constexpr std::size_t heldBackFrames = 256;

/// After this many silent frames the resampler's filter contains only silence: at the lowest rate
/// the filter extends over 212 frames to either side.
constexpr std::size_t settledFrames = 2 * heldBackFrames;

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
    Resampler resampler;
    if (format.nSamplesPerSec != frameRate) {
        int error = 0;
        resampler.reset(src_new(SRC_SINC_FASTEST, format.nChannels, &error));
        if (!resampler) {
            return nullptr;
        }
    }
    return std::unique_ptr<WaveConverter>(new WaveConverter(format, std::move(resampler)));
}

WaveConverter::WaveConverter(const WaveFormat& format, Resampler resampler)
    : channels_(format.nChannels),
      bytesPerSample_(format.wBitsPerSample / 8U),
      rate_(format.nSamplesPerSec),
      ratio_(static_cast<double>(format.nSamplesPerSec) / frameRate),
      resampler_(std::move(resampler)),
      samples_(blockFrames * channels_) {
    const std::size_t most =
        (static_cast<std::size_t>(std::ceil(blockFrames * ratio_)) + heldBackFrames) * channels_;
    if (resampler_) {
        input_.resize(samples_.size());
        output_.resize(most);
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
    if (resampler_) {
        resample(count);
    } else {
        encode(std::span(samples_).first(count));
    }
    return std::span(bytes_).first(bytesUsed_);
}

/// Whether these frames and what the resampler contains are silent.
bool WaveConverter::isSettledSilence(std::span<const StereoFrame> frames) {
    if (peakOf(frames) != 0) {
        silentFrames_ = 0;
        return false;
    }
    const bool settled = silentFrames_ == settledFrames;
    silentFrames_ = std::min(silentFrames_ + frames.size(), settledFrames);
    return settled;
}

/// Produces silence without the resampler: resampling would take most of the processor time of a
/// silent card, and its result is known.
void WaveConverter::passSilence(std::size_t frames) {
    silentRemainder_ += std::uint64_t{frames} * rate_;
    const auto count = static_cast<std::size_t>(silentRemainder_ / frameRate) * channels_;
    silentRemainder_ %= frameRate;
    std::fill_n(resampled_.begin(), count, std::int16_t{0});
    encode(std::span(resampled_).first(count));
}

void WaveConverter::resample(std::size_t samples) {
    src_short_to_float_array(samples_.data(), input_.data(), static_cast<int>(samples));
    SRC_DATA data{};
    data.data_in = input_.data();
    data.input_frames = static_cast<long>(samples / channels_);
    data.src_ratio = ratio_;
    do {
        // The output must fit into the space that this block's earlier output has left.
        const std::size_t room = (bytes_.size() - bytesUsed_) / frameBytes();
        data.data_out = output_.data();
        data.output_frames = static_cast<long>(room);
        if (src_process(resampler_.get(), &data) != 0) {
            return;
        }
        const auto made = static_cast<std::size_t>(data.output_frames_gen) * channels_;
        src_float_to_short_array(output_.data(), resampled_.data(), static_cast<int>(made));
        encode(std::span(resampled_).first(made));
        data.data_in += static_cast<std::size_t>(data.input_frames_used) * channels_;
        data.input_frames -= data.input_frames_used;
    } while (data.input_frames > 0 && (data.input_frames_used > 0 || data.output_frames_gen > 0));
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
