// SPDX-License-Identifier: GPL-3.0-or-later
// Converts sound of any rate, mono or stereo, to the format of the sound card's lines, through
// libsamplerate. Sound at the card's rate passes unchanged.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "platform/linux/late/samplerate.h"
#include "platform/linux/mp3/pcm_reader.h"
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
    struct Close {
        void operator()(SRC_STATE* state) const { src_delete(state); }
    };
    CardRate(const PcmFormat& format, SRC_STATE* state) : format_(format), state_(state) {}
    void resample(std::span<const std::int16_t> samples);
    void append(std::span<const std::int16_t> samples);

    PcmFormat format_;
    std::unique_ptr<SRC_STATE, Close> state_; ///< null if the sound has the card's rate
    std::vector<float> input_;
    std::vector<float> output_;
    std::vector<std::int16_t> resampled_;
    std::vector<sound::StereoFrame> frames_;
};

} // namespace sonarith::mp3
