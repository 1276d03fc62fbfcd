// SPDX-License-Identifier: GPL-3.0-or-later
// Creates outputs for the software sound card's speakers: one that plays on an ALSA device, or one
// that discards the sound. The name "default" usually selects the desktop's sound server.
// sound_card.h mixes the sound, and playback_pump.h controls the timing.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/linux/sound/alsa_devices.h"
#include "platform/linux/sound/playback_pump.h"
#include "platform/linux/sound/sound_card.h"

namespace sonarith::sound {

/// Speakers that discard the sound.
class NullOutput : public SpeakerSink {
  public:
    void play(std::span<const StereoFrame>) override {}
};

/// Creates the output for the setting `Output`: a NullOutput for "" and "none", otherwise an output
/// for the ALSA device `name`. The device need not exist: it is opened when there is sound, and if
/// opening fails, it is tried again later.
[[nodiscard]] std::shared_ptr<SpeakerSink>
makeOutput(const std::string& name, PlaybackTiming timing = {}, ReportDevice report = {});

/// Opens an ALSA device for playback; returns null if that fails.
[[nodiscard]] std::unique_ptr<PcmPlayback> openAlsaPlayback(const std::string& name);

/// The outputs among which the user can choose: "default" first, then ALSA's devices, "none" last.
[[nodiscard]] std::vector<DeviceEntry> listOutputs();

} // namespace sonarith::sound
