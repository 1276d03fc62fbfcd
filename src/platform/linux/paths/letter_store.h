// SPDX-License-Identifier: GPL-3.0-or-later
// A copy of the stored drive letters, for threads that must not use the settings store. The thread
// of the logic writes the changes of this copy to the store.
#pragma once

#include <map>
#include <mutex>
#include <string>

#include "platform/settings_store.h"

namespace sonarith {

class LetterStore final : public SettingsStore {
  public:
    /// Copies the letters of `store`. Must be called on the logic thread.
    explicit LetterStore(const SettingsStore& store);

    /// Writes the changes since the last call of writeTo(). Must be called on the logic thread.
    void writeTo(SettingsStore& store);

    // The following functions are thread-safe and support only the section `drivesSection`
    // (drive_table.h). DeleteSetting() does nothing: DriveTable deletes no letter.
    [[nodiscard]] std::string GetSetting(const std::string& application, const std::string& section,
                                         const std::string& key,
                                         const std::string& fallback) const override;
    void SaveSetting(const std::string& application, const std::string& section,
                     const std::string& key, const std::string& value) override;
    void DeleteSetting(const std::string& application, const std::string& section,
                       const std::string& key) override;

  private:
    // These do nothing, because this copy is only in memory. writeTo() writes all changes to the
    // settings store in one transaction of that store.
    void beginTransaction() override {}
    void endTransaction() override {}

    mutable std::mutex mutex_;
    std::map<std::string, std::string> values_;  ///< by key
    std::map<std::string, std::string> changed_; ///< not written yet
};

} // namespace sonarith
