// SPDX-License-Identifier: GPL-3.0-or-later
// Opens and lists ALSA devices, for playback and capture, but transfers no sound. Devices are
// opened in the format of the software sound card.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/device_choice.h"
#include "platform/linux/late/alsa.h"

namespace sonarith::sound {

/// The device name that means that no device is used. An empty name has the same meaning.
inline constexpr const char* noDevice = "none";

[[nodiscard]] bool namesNoDevice(const std::string& name);

struct ClosePcm {
    void operator()(snd_pcm_t* pcm) const { snd_pcm_close(pcm); }
};
using PcmHandle = std::unique_ptr<snd_pcm_t, ClosePcm>;

/// Opens `name` for non-blocking reads or writes of stereo frames at the rate of the software sound
/// card, and does not start the device. ALSA converts the rate if the device has another rate.
/// Returns a null pointer if the device cannot be opened. The first call suppresses ALSA's error
/// messages for the whole process.
[[nodiscard]] PcmHandle openPcm(const std::string& name, snd_pcm_stream_t direction);

/// One entry of ALSA's list of devices.
struct DeviceHint {
    std::string name;
    std::string description; ///< may have several lines
    std::string direction;   ///< "Input", "Output", or empty for both
};

/// The entries of `hints` that can be chosen for `direction`: the default device first, even if
/// `hints` does not contain it; then, in the order of `hints`, every entry that is a sound server,
/// a real device or a device from the user's configuration. ALSA's plug-ins (converters, mixers,
/// "null", "oss") and devices with more than two channels are omitted. For playback, "none" is
/// last.
[[nodiscard]] std::vector<DeviceEntry> choosable(const std::vector<DeviceHint>& hints,
                                                 snd_pcm_stream_t direction);

/// The choosable() entries of ALSA's current configuration.
[[nodiscard]] std::vector<DeviceEntry> listDevices(snd_pcm_stream_t direction);

} // namespace sonarith::sound
