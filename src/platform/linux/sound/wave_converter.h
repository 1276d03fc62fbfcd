// SPDX-License-Identifier: GPL-3.0-or-later
// Converts the software sound card's frames to the format that a caller requests from a wave input:
// PCM of 4000 to 192000 Hz, mono or stereo, 8 or 16 bits. card_wave_input.h fills the caller's
// buffers with the result.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "platform/linux/sound/rate_converter.h"
#include "platform/linux/sound/sample_source.h"
#include "platform/wave_input.h"

namespace sonarith::sound {

class WaveConverter {
  public:
    /// Null if the format is inconsistent or is not PCM, if it does not have 1 or 2 channels of 8
    /// or 16 bits, if its rate is below 4000 or above 192000 Hz, or if RateConverter::create fails.
    [[nodiscard]] static std::unique_ptr<WaveConverter> create(const WaveFormat& format);

    /// Converts `frames`, at most blockFrames of the card, to whole frames of the format; the
    /// result is valid until the next call. Samples of 16 bits are little-endian; samples of 8 bits
    /// are unsigned, 128 is silence. Mono is the mean of both channels. Resampled sound is
    /// band-limited and a few milliseconds late. On average, the number of frames matches the rate.
    /// Never allocates.
    [[nodiscard]] std::span<const std::byte> convert(std::span<const StereoFrame> frames);

    /// Bytes of one frame of the format.
    [[nodiscard]] std::size_t frameBytes() const { return channels_ * bytesPerSample_; }

  private:
    WaveConverter(const WaveFormat& format, std::optional<RateConverter> resampler);
    [[nodiscard]] bool isSettledSilence(std::span<const StereoFrame> frames);
    void resample(std::span<const std::int16_t> samples);
    void passSilence(std::size_t frames);
    void encode(std::span<const std::int16_t> samples);

    std::size_t channels_;
    std::size_t bytesPerSample_;
    std::uint32_t rate_;
    std::optional<RateConverter> resampler_; ///< empty if the rate is the card's
    /// After this many silent frames the resampler's filter contains only silence.
    std::size_t settledFrames_;
    // These three buffers have a fixed size, which is enough for the largest block.
    std::vector<std::int16_t> samples_;
    std::vector<std::int16_t> resampled_;
    std::vector<std::byte> bytes_; ///< valid up to bytesUsed_
    std::size_t bytesUsed_ = 0;
    std::size_t silentFrames_ = 0; ///< since the last sound, up to settledFrames_
    /// convert() returns whole frames. When it writes silence without the resampler, the number of
    /// frames at the new rate may have a fraction. This fraction is added to the number in the next
    /// call that writes silence without the resampler. The fraction is silentRemainder_ divided by
    /// frameRate (the card's rate).
    std::uint64_t silentRemainder_ = 0;
};

} // namespace sonarith::sound
