// SPDX-License-Identifier: GPL-3.0-or-later
// Outputs for the card's speakers: an ALSA device by its name, or none. The name "default" also
// selects the desktop's sound server. It does not mix (sound_card.h) and does not control the
// timing (playback_pump.h).
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

/// The output for the settings store's `Output`: "" and "none" are a NullOutput, everything else is
/// the name of an ALSA device. The device need not exist: opening it is tried when there is sound,
/// and again later if that fails.
[[nodiscard]] std::shared_ptr<SpeakerSink>
makeOutput(const std::string& name, PlaybackTiming timing = {}, ReportDevice report = {});

/// Opens an ALSA device for playback; empty if that fails.
[[nodiscard]] std::unique_ptr<PcmPlayback> openAlsaPlayback(const std::string& name);

/// The choices for the output: "default" first, then ALSA's devices, "none" last.
[[nodiscard]] std::vector<DeviceEntry> listOutputs();

} // namespace sonarith::sound
