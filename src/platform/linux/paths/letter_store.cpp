// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/letter_store.h"

#include <utility>

#include "platform/linux/paths/drive_table.h"

namespace sonarith {

LetterStore::LetterStore(const SettingsStore& store) {
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        const std::string key(1, letter);
        std::string value = store.GetSetting(applicationName, drivesSection, key, "");
        if (!value.empty()) {
            values_.emplace(key, std::move(value));
        }
    }
}

void LetterStore::writeTo(SettingsStore& store) {
    std::map<std::string, std::string> changed;
    {
        const std::lock_guard lock(mutex_);
        changed.swap(changed_);
    }
    if (changed.empty()) {
        return;
    }
    const StoreTransaction together(store);
    for (const auto& [key, value] : changed) {
        store.SaveSetting(applicationName, drivesSection, key, value);
    }
}

std::string LetterStore::GetSetting(const std::string& /*application*/,
                                    const std::string& /*section*/, const std::string& key,
                                    const std::string& fallback) const {
    const std::lock_guard lock(mutex_);
    const auto found = values_.find(key);
    return found == values_.end() ? fallback : found->second;
}

void LetterStore::SaveSetting(const std::string& /*application*/, const std::string& /*section*/,
                              const std::string& key, const std::string& value) {
    const std::lock_guard lock(mutex_);
    values_[key] = value;
    changed_[key] = value;
}

// Does nothing: the table of drives never deletes a letter, because an unmounted disk keeps its
// letter.
void LetterStore::DeleteSetting(const std::string& /*application*/, const std::string& /*section*/,
                                const std::string& /*key*/) {}

} // namespace sonarith
