// SPDX-License-Identifier: GPL-3.0-or-later
// The per-user store of text values, addressed by application, section and key. Interface only.
#pragma once

#include <string>

namespace sonarith {

/// The one application name for all stored values.
inline constexpr const char* applicationName = "Sonarith v2.0";

class SettingsStore {
  public:
    virtual ~SettingsStore() = default;
    /// The stored text, or `fallback` for a key that does not exist.
    [[nodiscard]] virtual std::string GetSetting(const std::string& application,
                                                 const std::string& section, const std::string& key,
                                                 const std::string& fallback) const = 0;
    /// Outside a transaction, writes the value to the disk before the call returns. A failure to
    /// write is not reported to the caller.
    virtual void SaveSetting(const std::string& application, const std::string& section,
                             const std::string& key, const std::string& value) = 0;
    virtual void DeleteSetting(const std::string& application, const std::string& section,
                               const std::string& key) = 0;

  private:
    friend class StoreTransaction;
    virtual void beginTransaction() = 0;
    virtual void endTransaction() = 0;
};

/// While an instance exists, changes to the store are not written to the disk, and reads return the
/// new values. The destructor writes all changes by replacing the store's file once, so that a
/// killed process leaves either the old or the new file. Transactions may be nested: only the
/// outermost one writes. No transaction may exist across a yield.
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
