// SPDX-License-Identifier: GPL-3.0-or-later
// Devices that this machine does not offer: each operation answers that there is none.
#pragma once

#include "platform/mixer.h"
#include "platform/wave_input.h"

namespace sonarith {

class AbsentMixer final : public Mixer {
  public:
    MixerResult open(MixerHandle&) override { return MixerResult::badDevice; }
    MixerResult getLineInfo(MixerHandle, MixerLine&) override { return MixerResult::badDevice; }
    MixerResult getLineControls(MixerHandle, MixerLineControls&) override {
        return MixerResult::badDevice;
    }
    MixerResult getControlDetails(MixerHandle, MixerControlDetails&) override {
        return MixerResult::badDevice;
    }
    MixerResult setControlDetails(MixerHandle, const MixerControlDetails&) override {
        return MixerResult::badDevice;
    }
};

class AbsentWaveInput final : public WaveInput {
  public:
    WaveResult open(WaveInHandle&, std::uint32_t, const WaveFormat&) override {
        return WaveResult::badDevice;
    }
    WaveResult prepareHeader(WaveInHandle, WaveHeader&) override { return WaveResult::badDevice; }
    WaveResult unprepareHeader(WaveInHandle, WaveHeader&) override { return WaveResult::badDevice; }
    WaveResult addBuffer(WaveInHandle, WaveHeader&) override { return WaveResult::badDevice; }
    WaveResult start(WaveInHandle) override { return WaveResult::badDevice; }
    WaveResult stop(WaveInHandle) override { return WaveResult::badDevice; }
    WaveResult reset(WaveInHandle) override { return WaveResult::badDevice; }
    WaveResult close(WaveInHandle) override { return WaveResult::badDevice; }
    [[nodiscard]] std::string errorText(WaveResult) const override {
        return "There is no sound input.";
    }
};

} // namespace sonarith
