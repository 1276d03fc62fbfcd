// SPDX-License-Identifier: GPL-3.0-or-later
// Records which sectors of a disc could not be read, each counted once however often it was tried,
// and how each was last delivered. It may be kept longer than the disc, for the next load of the
// same disc.
#pragma once

#include <cstdint>
#include <mutex>
#include <vector>

#include "platform/linux/disc/disc.h"

namespace sonarith::disc {

/// How a damaged sector was delivered to the player.
enum class Delivery {
    whole,
    guess,   ///< as the drive's best guess
    silence, ///< nothing could be read
};

/// Thread-safe.
class DamageRecord {
  public:
    /// `sector` uses the drive's numbering and is not negative.
    void note(std::int64_t sector, Delivery delivery);
    /// The number of different sectors that were damaged in at least one read.
    [[nodiscard]] std::int64_t sectors() const;
    /// How many of those in [`first`, `end`) were damaged when they were last delivered.
    [[nodiscard]] Damage among(std::int64_t first, std::int64_t end) const;

  private:
    mutable std::mutex mutex_;
    // Indexed by sector, up to the last damaged one; 56 KB each for the longest disc.
    std::vector<bool> damaged_; ///< in at least one read
    std::vector<bool> guessed_; ///< in the last read
    std::vector<bool> silent_;  ///< in the last read
    std::int64_t count_ = 0;
};

} // namespace sonarith::disc
