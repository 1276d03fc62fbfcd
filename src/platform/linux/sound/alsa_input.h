// SPDX-License-Identifier: GPL-3.0-or-later
// ALSA capture devices as external inputs of the card. It is not the recorder (sound_card.h) and
// determines no timing (capture_pump.h).
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/linux/sound/alsa_devices.h"
#include "platform/linux/sound/external_input.h"

namespace sonarith::sound {

/// The input with ALSA's name `name`, which need not exist: without data from the device its source
/// is silent.
[[nodiscard]] std::shared_ptr<ExternalInput>
makeInput(const std::string& name, ReportDevice report = {}, CaptureTiming timing = {});

/// Opens an ALSA device for capture; empty if that fails.
[[nodiscard]] std::unique_ptr<PcmCapture> openAlsaCapture(const std::string& name);

/// The choices for the input: "default" first, then ALSA's devices.
[[nodiscard]] std::vector<DeviceEntry> listInputs();

} // namespace sonarith::sound
