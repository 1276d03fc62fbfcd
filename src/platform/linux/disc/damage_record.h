// SPDX-License-Identifier: GPL-3.0-or-later
// Records which sectors of a disc are damaged, and how each of them was last delivered. A sector
// counts as damaged once it has been recorded as a guess or as silence. A damaged sector is counted
// once, however often it is delivered. The record may outlive the Disc object, so that the next
// load of the same disc can continue the record.
#pragma once

#include <cstdint>
#include <mutex>
#include <vector>

#include "platform/linux/disc/disc.h"

namespace sonarith::disc {

/// How a sector was delivered to the player.
enum class Delivery {
    whole,   ///< without an error
    guess,   ///< as the drive's best guess
    silence, ///< as silence: nothing could be read, or no read was attempted
};

/// Thread-safe.
class DamageRecord {
  public:
    /// Records how `sector` was delivered. `sector` uses the drive's numbering and is not negative.
    void note(std::int64_t sector, Delivery delivery);
    /// The number of damaged sectors, including those that were later delivered without an error.
    [[nodiscard]] std::int64_t sectors() const;
    /// How many sectors in [`first`, `end`) were last delivered as silence, and how many as a
    /// guess.
    [[nodiscard]] Damage among(std::int64_t first, std::int64_t end) const;

  private:
    mutable std::mutex mutex_;
    // Each vector is indexed by sector, up to the highest damaged one: at most 56 KB each.
    std::vector<bool> damaged_; ///< the sector was delivered at least once as a guess or as silence
    std::vector<bool> guessed_; ///< the sector was last delivered as a guess
    std::vector<bool> silent_;  ///< the sector was last delivered as silence
    std::int64_t count_ = 0;
};

} // namespace sonarith::disc
