// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the software sound card's external inputs, which capture from ALSA devices. sound_card.h
// records their sound, and capture_pump.h decides when a device is opened and read.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/linux/sound/alsa_devices.h"
#include "platform/linux/sound/external_input.h"

namespace sonarith::sound {

/// Creates the input that uses ALSA's device `name`. The device need not exist: the input is silent
/// while it receives no data from the device.
[[nodiscard]] std::shared_ptr<ExternalInput>
makeInput(const std::string& name, ReportDevice report = {}, CaptureTiming timing = {});

/// Opens an ALSA device for capture; returns null if that fails.
[[nodiscard]] std::unique_ptr<PcmCapture> openAlsaCapture(const std::string& name);

/// The inputs among which the user can choose: "default" first, then ALSA's devices.
[[nodiscard]] std::vector<DeviceEntry> listInputs();

} // namespace sonarith::sound
