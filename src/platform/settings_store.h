// SPDX-License-Identifier: GPL-3.0-or-later
// The per-user store of text values, addressed by application, section and key. Interface only.
#pragma once

#include <string>

namespace sonarith {

/// The one application name under which everything is stored.
inline constexpr const char* applicationName = "Sonarith v2.0";

class SettingsStore {
  public:
    virtual ~SettingsStore() = default;
    /// The stored text, or `fallback` for a key that was never written.
    [[nodiscard]] virtual std::string GetSetting(const std::string& application,
                                                 const std::string& section, const std::string& key,
                                                 const std::string& fallback) const = 0;
    /// The value is on disk when this returns; a failure to write is silent.
    virtual void SaveSetting(const std::string& application, const std::string& section,
                             const std::string& key, const std::string& value) = 0;
    virtual void DeleteSetting(const std::string& application, const std::string& section,
                               const std::string& key) = 0;
};

} // namespace sonarith
