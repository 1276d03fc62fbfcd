// SPDX-License-Identifier: GPL-3.0-or-later
// How machine paths that passed through the program are spelled, found again by their lower case.
// It looks at no disk: what it remembers may exist no more.
#pragma once

#include <cstddef>
#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace sonarith {

/// Any thread may call the members.
class SpellingMemory {
  public:
    /// Some 5,000 paths of a usual length. Nobody chooses more, and of the folders that a search of
    /// a whole disk visits those are forgotten first that were not used for longest.
    static constexpr std::size_t usualBytes = std::size_t{1} << 20;

    /// `mostBytes` bounds the paths' text.
    explicit SpellingMemory(std::size_t mostBytes = usualBytes) : mostBytes_(mostBytes) {}

    /// Takes the place of another spelling of the same path.
    void remember(const std::string& path);
    /// The spelling of a path given in any case; nothing if there is none.
    [[nodiscard]] std::optional<std::string> find(std::string_view path);

  private:
    struct Entry {
        std::string lowered;
        std::string spelled;
    };

    const std::size_t mostBytes_;
    std::mutex mutex_; ///< of all below
    std::size_t bytes_ = 0;
    /// The one used last comes first.
    std::list<Entry> entries_;
    /// The keys are texts of the entries, which do not move.
    std::unordered_map<std::string_view, std::list<Entry>::iterator> byLowered_;
};

} // namespace sonarith
