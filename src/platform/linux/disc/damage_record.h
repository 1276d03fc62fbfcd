// SPDX-License-Identifier: GPL-3.0-or-later
// Which sectors of a disc could not be read, each counted once however often it was tried. It may
// be kept longer than the disc, for the next time that the same disc is loaded.
#pragma once

#include <cstdint>
#include <mutex>
#include <vector>

namespace sonarith::disc {

/// All members may be called from any thread.
class DamageRecord {
  public:
    /// `sector` in the drive's numbers, not negative.
    void note(std::int64_t sector);
    /// How many different sectors have been noted.
    [[nodiscard]] std::int64_t sectors() const;

  private:
    mutable std::mutex mutex_;
    std::vector<bool> damaged_; ///< by sector; 56 KB for the longest disc
    std::int64_t count_ = 0;
};

} // namespace sonarith::disc
