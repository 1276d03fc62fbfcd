// SPDX-License-Identifier: GPL-3.0-or-later
// The external input: what an ALSA device hears, as a source for the card's line. It is not the
// recorder (sound_card.h) and decides no timing (capture_pump.h).
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/linux/sound/alsa_devices.h"
#include "platform/linux/sound/capture_pump.h"

namespace sonarith::sound {

/// A source that never ends: "" and "none" are silence, all else is the name of an ALSA device,
/// which is open for as long as the source lives and is silent where it has nothing.
[[nodiscard]] std::shared_ptr<SampleSource> makeInput(const std::string& name,
                                                      CaptureTiming timing = {});

/// Opens an ALSA device for listening; empty if that fails.
[[nodiscard]] std::unique_ptr<PcmCapture> openAlsaCapture(const std::string& name);

/// What can be chosen as input: "default" first, then ALSA's devices, "none" last.
[[nodiscard]] std::vector<DeviceEntry> listInputs();

} // namespace sonarith::sound
