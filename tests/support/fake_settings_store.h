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
    /// The keys passed to GetSetting(), oldest first.
    mutable std::vector<std::string> readKeys;
    /// The writes through SaveSetting(), oldest first.
    std::vector<StoreWrite> writes;
    /// How often a real store would write its file at most. Each SaveSetting() or DeleteSetting()
    /// outside a transaction counts once. So does each outermost transaction with such a call.
    int fileWrites = 0;

    /// Sets a value without logging it.
    void put(const std::string& section, const std::string& key, const std::string& value) {
        values_[{applicationName, section, key}] = value;
    }
    /// The value that is stored under the program's application name; nothing if there is none.
    [[nodiscard]] std::optional<std::string> held(const std::string& section,
                                                  const std::string& key) const {
        const auto found = values_.find({applicationName, section, key});
        return found == values_.end() ? std::nullopt : std::optional(found->second);
    }
    /// Number of keys in all sections of all applications.
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
