// SPDX-License-Identifier: GPL-3.0-or-later
// Which devices the user has chosen: the store's section "Devices".
#pragma once

#include <string>

#include "platform/settings_store.h"

namespace sonarith {

class ChosenDevices {
  public:
    /// The section of the store.
    static constexpr const char* section = "Devices";
    /// The recording source that is all that goes to the speakers.
    static constexpr const char* mixSource = "mix";

    /// The store outlives it.
    explicit ChosenDevices(SettingsStore& store) : store_(store) {}

    /// Empty: the first optical drive found; else a device node or a disc image's path, in the
    /// machine's form.
    [[nodiscard]] std::string drive() const;
    /// The name of an ALSA device, or "none".
    [[nodiscard]] std::string output() const;
    /// Empty: the compact disc line; `mixSource`; else the name of an ALSA device.
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
