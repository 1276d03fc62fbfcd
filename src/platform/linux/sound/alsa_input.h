// SPDX-License-Identifier: GPL-3.0-or-later
// ALSA capture devices as external inputs of the card. It does not record (sound_card.h) and does
// not control the timing (capture_pump.h).
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/linux/sound/alsa_devices.h"
#include "platform/linux/sound/external_input.h"

namespace sonarith::sound {

/// The input that uses ALSA's device `name`. The device need not exist: the input is silent while
/// it has no data from the device.
[[nodiscard]] std::shared_ptr<ExternalInput>
makeInput(const std::string& name, ReportDevice report = {}, CaptureTiming timing = {});

/// Opens an ALSA device for capture; empty if that fails.
[[nodiscard]] std::unique_ptr<PcmCapture> openAlsaCapture(const std::string& name);

/// The choices for the input: "default" first, then ALSA's devices.
[[nodiscard]] std::vector<DeviceEntry> listInputs();

} // namespace sonarith::sound
