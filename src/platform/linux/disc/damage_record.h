// SPDX-License-Identifier: GPL-3.0-or-later
// Which sectors of a disc could not be read, each counted once however often it was tried, and how
// each was delivered last. It may be kept longer than the disc, for the next time that the same
// disc is loaded.
#pragma once

#include <cstdint>
#include <mutex>
#include <vector>

#include "platform/linux/disc/disc.h"

namespace sonarith::disc {

/// How a sector reached the player.
enum class Delivery {
    whole,
    guess,   ///< as the drive's best guess
    silence, ///< nothing of it could be read
};

/// All members may be called from any thread.
class DamageRecord {
  public:
    /// `sector` in the drive's numbers, not negative.
    void note(std::int64_t sector, Delivery delivery);
    /// How many different sectors have not been whole at some time.
    [[nodiscard]] std::int64_t sectors() const;
    /// How many of those from `first` up to `end` were not whole when they were delivered last.
    [[nodiscard]] Damage among(std::int64_t first, std::int64_t end) const;

  private:
    mutable std::mutex mutex_;
    // By sector, up to the last that was damaged; 56 KB each for the longest disc.
    std::vector<bool> damaged_; ///< at some time
    std::vector<bool> guessed_; ///< the last time
    std::vector<bool> silent_;  ///< the last time
    std::int64_t count_ = 0;
};

} // namespace sonarith::disc
