// SPDX-License-Identifier: GPL-3.0-or-later
// Brings the card's frames to a format that a program asks a wave input for: PCM of another rate,
// mono or stereo, 8 or 16 bits. It fills no buffers (card_wave_input.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "platform/linux/late/samplerate.h"
#include "platform/linux/sound/sample_source.h"
#include "platform/wave_input.h"

namespace sonarith::sound {

class WaveConverter {
  public:
    /// Empty for a format that is not consistent, no PCM, of other than 1 or 2 channels and 8 or 16
    /// bits, or of a rate that no sound card has (below 4000 or above 192000 Hz).
    [[nodiscard]] static std::unique_ptr<WaveConverter> create(const WaveFormat& format);

    /// What `frames`, at most blockFrames of the card, become: whole frames of the format, until
    /// the next call. 16 bits are little-endian; 8 bits have no sign, 128 is silence. Mono is the
    /// mean of both channels. The sound of another rate is band-limited and a few milliseconds
    /// late; over time there is as much of it as the rate says. Never allocates.
    [[nodiscard]] std::span<const std::byte> convert(std::span<const StereoFrame> frames);

    /// Bytes of one frame of the format.
    [[nodiscard]] std::size_t frameBytes() const { return channels_ * bytesPerSample_; }

  private:
    struct Close {
        void operator()(SRC_STATE* state) const { src_delete(state); }
    };
    using Resampler = std::unique_ptr<SRC_STATE, Close>;

    WaveConverter(const WaveFormat& format, Resampler resampler);
    void resample(std::size_t samples);
    void encode(std::span<const std::int16_t> samples);

    std::size_t channels_;
    std::size_t bytesPerSample_;
    double ratio_;        ///< the format's rate to the card's
    Resampler resampler_; ///< null: the rate is the card's
    // Of fixed size: for the largest block, in samples.
    std::vector<std::int16_t> samples_;
    std::vector<float> input_;
    std::vector<float> output_;
    std::vector<std::int16_t> resampled_;
    std::vector<std::byte> bytes_; ///< as far as bytesUsed_
    std::size_t bytesUsed_ = 0;
};

} // namespace sonarith::sound
