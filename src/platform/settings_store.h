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
    /// The value is on disk when this returns, or at the end of the transaction that goes on. A
    /// failure to write is silent.
    virtual void SaveSetting(const std::string& application, const std::string& section,
                             const std::string& key, const std::string& value) = 0;
    virtual void DeleteSetting(const std::string& application, const std::string& section,
                               const std::string& key) = 0;

  private:
    friend class StoreTransaction;
    virtual void beginTransaction() = 0;
    virtual void endTransaction() = 0;
};

/// For as long as it lives, changes of the store wait, and reads see them; its end brings them to
/// the disk as one replacement of the file, so that a kill leaves the file of before or of after.
/// Transactions may stand within each other: the outermost one counts. None lives across a yield.
class StoreTransaction {
  public:
    explicit StoreTransaction(SettingsStore& store) : store_(store) { store_.beginTransaction(); }
    ~StoreTransaction() { store_.endTransaction(); }
    StoreTransaction(const StoreTransaction&) = delete;
    StoreTransaction& operator=(const StoreTransaction&) = delete;

  private:
    SettingsStore& store_;
};

} // namespace sonarith
