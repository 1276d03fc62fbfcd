// SPDX-License-Identifier: GPL-3.0-or-later
// A settings store in memory that logs reads and writes.
#pragma once

#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <tuple>
#include <vector>

#include "platform/settings_store.h"

namespace sonarith::test {

struct StoreWrite {
    std::string section;
    std::string key;
    std::string value;

    bool operator==(const StoreWrite&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const StoreWrite& write) {
    return out << write.section << "/" << write.key << "=" << write.value;
}

class FakeSettingsStore final : public SettingsStore {
  public:
    /// The keys read, oldest first, whether present or not.
    mutable std::vector<std::string> readKeys;
    /// The writes through SaveSetting(), oldest first.
    std::vector<StoreWrite> writes;
    /// How often a file would have been written: once for each change outside a transaction, and
    /// once for each transaction.
    int fileWrites = 0;

    /// Sets a value before the test; not logged.
    void put(const std::string& section, const std::string& key, const std::string& value) {
        values_[{applicationName, section, key}] = value;
    }
    /// The values under the program's own application name.
    [[nodiscard]] std::optional<std::string> held(const std::string& section,
                                                  const std::string& key) const {
        const auto found = values_.find({applicationName, section, key});
        return found == values_.end() ? std::nullopt : std::optional(found->second);
    }
    /// Number of keys, of all applications and sections.
    [[nodiscard]] std::size_t size() const { return values_.size(); }

    [[nodiscard]] std::string GetSetting(const std::string& application, const std::string& section,
                                         const std::string& key,
                                         const std::string& fallback) const override {
        readKeys.push_back(key);
        const auto found = values_.find({application, section, key});
        return found == values_.end() ? fallback : found->second;
    }
    void SaveSetting(const std::string& application, const std::string& section,
                     const std::string& key, const std::string& value) override {
        writes.push_back({section, key, value});
        values_[{application, section, key}] = value;
        changed();
    }
    void DeleteSetting(const std::string& application, const std::string& section,
                       const std::string& key) override {
        values_.erase({application, section, key});
        changed();
    }

  private:
    void beginTransaction() override { ++depth_; }
    void endTransaction() override {
        if (--depth_ == 0 && pending_) {
            pending_ = false;
            ++fileWrites;
        }
    }
    void changed() {
        if (depth_ > 0) {
            pending_ = true;
        } else {
            ++fileWrites;
        }
    }

    int depth_ = 0;
    bool pending_ = false;
    std::map<std::tuple<std::string, std::string, std::string>, std::string> values_;
};

} // namespace sonarith::test
