// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/alsa_input.h"

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

} // namespace

std::unique_ptr<PcmCapture> openAlsaCapture(const std::string& name) {
    PcmHandle pcm = openPcm(name, SND_PCM_STREAM_CAPTURE);
    return pcm ? std::make_unique<AlsaCapture>(std::move(pcm)) : nullptr;
}

std::shared_ptr<ExternalInput> makeInput(const std::string& name, ReportDevice report,
                                         CaptureTiming timing) {
    return std::make_shared<ExternalInput>(
        name, [name] { return openAlsaCapture(name); }, std::move(report), timing);
}

std::vector<DeviceEntry> listInputs() {
    return listDevices(SND_PCM_STREAM_CAPTURE);
}

} // namespace sonarith::sound
