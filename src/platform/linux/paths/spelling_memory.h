// SPDX-License-Identifier: GPL-3.0-or-later
// Remembers the spelling of machine paths that were used, and finds them case-insensitively. It
// accesses no disk: a remembered path may no longer exist.
#pragma once

#include <cstddef>
#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace sonarith {

/// Thread-safe.
class SpellingMemory {
  public:
    /// Enough for about 5,000 paths of usual length. No user chooses more paths. A search of a
    /// whole disk may visit more folders; the least recently used paths are then forgotten.
    static constexpr std::size_t usualBytes = std::size_t{1} << 20;

    /// `mostBytes` limits the total length of the stored strings. Each path counts twice: it is
    /// stored as it is spelled and in lower case.
    explicit SpellingMemory(std::size_t mostBytes = usualBytes) : mostBytes_(mostBytes) {}

    /// Stores the spelling of `path` in place of any other spelling of the same path.
    void remember(const std::string& path);
    /// The remembered spelling of `path`, which is compared case-insensitively. Empty if no
    /// spelling of `path` is remembered.
    [[nodiscard]] std::optional<std::string> find(std::string_view path);

  private:
    struct Entry {
        std::string lowered;
        std::string spelled;
    };

    const std::size_t mostBytes_;
    std::mutex mutex_; ///< protects all members below
    std::size_t bytes_ = 0;
    /// Ordered by last use, the most recent first.
    std::list<Entry> entries_;
    /// The keys point into the entries, whose addresses do not change.
    std::unordered_map<std::string_view, std::list<Entry>::iterator> byLowered_;
};

} // namespace sonarith
