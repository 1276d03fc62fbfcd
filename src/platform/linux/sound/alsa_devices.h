// SPDX-License-Identifier: GPL-3.0-or-later
// What playing and listening through ALSA have in common: opening a device in the card's format,
// and the list of devices. No sound passes here.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/device_choice.h"
#include "platform/linux/late/alsa.h"

namespace sonarith::sound {

/// The name that stands for no device at all; an empty name means the same.
inline constexpr const char* noDevice = "none";

[[nodiscard]] bool namesNoDevice(const std::string& name);

struct ClosePcm {
    void operator()(snd_pcm_t* pcm) const { snd_pcm_close(pcm); }
};
using PcmHandle = std::unique_ptr<snd_pcm_t, ClosePcm>;

/// Opens `name` without blocking reads and writes, for stereo frames at the card's rate (converted
/// by ALSA where the device has another), and starts nothing by itself. Empty if that fails. From
/// the first call on, ALSA prints no messages of its own.
[[nodiscard]] PcmHandle openPcm(const std::string& name, snd_pcm_stream_t direction);

/// One entry of ALSA's list of devices.
struct DeviceHint {
    std::string name;
    std::string description; ///< of several lines
    std::string direction;   ///< "Input", "Output", or empty for both
};

/// What of `hints` can be chosen for `direction`: the default device first, whether it is among
/// them or not; then sound servers, real devices and what the user has configured, in their order.
/// ALSA's plug-ins are left out (converters, mixers, device files of its own), as are the card
/// names for more channels than two. For playing, "none" is last.
[[nodiscard]] std::vector<DeviceEntry> choosable(const std::vector<DeviceHint>& hints,
                                                 snd_pcm_stream_t direction);

/// The same for ALSA's configuration as it is now.
[[nodiscard]] std::vector<DeviceEntry> listDevices(snd_pcm_stream_t direction);

} // namespace sonarith::sound
