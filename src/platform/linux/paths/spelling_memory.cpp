// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/spelling_memory.h"

#include <utility>

#include "platform/text/unicode.h"

namespace sonarith {

void SpellingMemory::remember(const std::string& path) {
    std::string lowered = lowerCase(path);
    const std::lock_guard lock(mutex_);
    if (const auto known = byLowered_.find(lowered); known != byLowered_.end()) {
        const auto entry = known->second;
        if (entry->spelled == path) {
            entries_.splice(entries_.begin(), entries_, entry);
            return;
        }
        bytes_ -= entry->lowered.size() + entry->spelled.size();
        byLowered_.erase(known);
        entries_.erase(entry);
    }
    bytes_ += lowered.size() + path.size();
    entries_.push_front({std::move(lowered), path});
    byLowered_.emplace(entries_.front().lowered, entries_.begin());
    while (bytes_ > mostBytes_) {
        const Entry& oldest = entries_.back();
        bytes_ -= oldest.lowered.size() + oldest.spelled.size();
        byLowered_.erase(oldest.lowered);
        entries_.pop_back();
    }
}

std::optional<std::string> SpellingMemory::find(std::string_view path) {
    const std::string lowered = lowerCase(path);
    const std::lock_guard lock(mutex_);
    const auto known = byLowered_.find(lowered);
    if (known == byLowered_.end()) {
        return std::nullopt;
    }
    entries_.splice(entries_.begin(), entries_, known->second);
    return known->second->spelled;
}

} // namespace sonarith
