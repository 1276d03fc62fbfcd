// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/alsa_input.h"

#include <algorithm>
#include <utility>

namespace sonarith::sound {

namespace {

class AlsaCapture : public PcmCapture {
  public:
    explicit AlsaCapture(PcmHandle pcm) : pcm_(std::move(pcm)) {}

    long read(std::span<StereoFrame> frames) override {
        return snd_pcm_readi(pcm_.get(), frames.data(), frames.size());
    }
    int waitForFrames(std::chrono::milliseconds atMost) override {
        return snd_pcm_wait(pcm_.get(), static_cast<int>(atMost.count()));
    }
    int restart() override {
        const int error = snd_pcm_prepare(pcm_.get());
        return error < 0 ? error : snd_pcm_start(pcm_.get());
    }

  private:
    PcmHandle pcm_;
};

class SilentInput : public SampleSource {
  public:
    Pulled pull(std::span<StereoFrame> block) override {
        std::fill(block.begin(), block.end(), StereoFrame{});
        return {block.size(), Supply::flowing};
    }
};

} // namespace

std::unique_ptr<PcmCapture> openAlsaCapture(const std::string& name) {
    PcmHandle pcm = openPcm(name, SND_PCM_STREAM_CAPTURE);
    return pcm ? std::make_unique<AlsaCapture>(std::move(pcm)) : nullptr;
}

std::shared_ptr<SampleSource> makeInput(const std::string& name, CaptureTiming timing) {
    if (namesNoDevice(name)) {
        return std::make_shared<SilentInput>();
    }
    return std::make_shared<CapturePump>([name] { return openAlsaCapture(name); }, timing);
}

std::vector<DeviceEntry> listInputs() {
    return listDevices(SND_PCM_STREAM_CAPTURE);
}

} // namespace sonarith::sound
