// SPDX-License-Identifier: GPL-3.0-or-later
// Reads and writes the user's choice of devices in section "Devices" of the settings store. It
// opens no device.
#pragma once

#include <string>

#include "platform/settings_store.h"

namespace sonarith {

class ChosenDevices {
  public:
    /// Section of the settings store.
    static constexpr const char* section = "Devices";
    /// The recording source that is the sum of all lines of the software sound card, before volumes
    /// and mutes.
    static constexpr const char* mixSource = "mix";

    /// `store` must outlive this object.
    explicit ChosenDevices(SettingsStore& store) : store_(store) {}

    /// Empty for the first optical drive found; otherwise a device node or the machine path of a
    /// disc image.
    [[nodiscard]] std::string drive() const;
    /// The name of an ALSA device, or "none".
    [[nodiscard]] std::string output() const;
    /// Empty for the compact disc line; otherwise `mixSource` or the name of an ALSA device.
    [[nodiscard]] std::string source() const;
    void setDrive(const std::string& drive);
    void setOutput(const std::string& output);
    void setSource(const std::string& source);

  private:
    [[nodiscard]] std::string read(const std::string& key, const std::string& fallback) const;
    void write(const std::string& key, const std::string& value);

    SettingsStore& store_;
};

} // namespace sonarith
