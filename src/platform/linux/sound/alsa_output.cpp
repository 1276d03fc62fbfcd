// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/alsa_output.h"

#include <utility>

namespace sonarith::sound {

namespace {

class AlsaPlayback : public PcmPlayback {
  public:
    explicit AlsaPlayback(PcmHandle pcm) : pcm_(std::move(pcm)) {}

    long write(std::span<const StereoFrame> frames) override {
        return snd_pcm_writei(pcm_.get(), frames.data(), frames.size());
    }
    int waitForRoom(std::chrono::milliseconds atMost) override {
        return snd_pcm_wait(pcm_.get(), static_cast<int>(atMost.count()));
    }
    int prepare() override { return snd_pcm_prepare(pcm_.get()); }
    int start() override { return snd_pcm_start(pcm_.get()); }
    void stop() override { snd_pcm_drop(pcm_.get()); }
    long queued() override {
        snd_pcm_sframes_t frames = 0;
        const int error = snd_pcm_delay(pcm_.get(), &frames);
        return error < 0 ? error : frames;
    }

  private:
    PcmHandle pcm_;
};

} // namespace

std::unique_ptr<PcmPlayback> openAlsaPlayback(const std::string& name) {
    PcmHandle pcm = openPcm(name, SND_PCM_STREAM_PLAYBACK);
    return pcm ? std::make_unique<AlsaPlayback>(std::move(pcm)) : nullptr;
}

std::shared_ptr<SpeakerSink> makeOutput(const std::string& name, PlaybackTiming timing,
                                        ReportDevice report) {
    if (namesNoDevice(name)) {
        return std::make_shared<NullOutput>();
    }
    return std::make_shared<PlaybackPump>([name] { return openAlsaPlayback(name); }, timing,
                                          std::move(report));
}

std::vector<DeviceEntry> listOutputs() {
    return listDevices(SND_PCM_STREAM_PLAYBACK);
}

} // namespace sonarith::sound
