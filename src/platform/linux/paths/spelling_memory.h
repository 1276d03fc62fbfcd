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
    /// About 5,000 paths of usual length. No user chooses more; of the folders that a search of a
    /// whole disk visits, the least recently used are forgotten first.
    static constexpr std::size_t usualBytes = std::size_t{1} << 20;

    /// `mostBytes` limits the total length of the paths.
    explicit SpellingMemory(std::size_t mostBytes = usualBytes) : mostBytes_(mostBytes) {}

    /// Replaces another spelling of the same path.
    void remember(const std::string& path);
    /// The remembered spelling of a path given in any case; empty if there is none.
    [[nodiscard]] std::optional<std::string> find(std::string_view path);

  private:
    struct Entry {
        std::string lowered;
        std::string spelled;
    };

    const std::size_t mostBytes_;
    std::mutex mutex_; ///< protects all members below
    std::size_t bytes_ = 0;
    /// The most recently used one is first.
    std::list<Entry> entries_;
    /// The keys refer to the texts of the entries, which do not move.
    std::unordered_map<std::string_view, std::list<Entry>::iterator> byLowered_;
};

} // namespace sonarith
