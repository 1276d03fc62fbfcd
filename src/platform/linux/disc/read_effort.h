// SPDX-License-Identifier: GPL-3.0-or-later
// Computes how much time is spent on a damaged disc. Each read has a time budget, which is halved
// after each read that exceeds it. Pure arithmetic on times that the caller measures; it reads
// nothing.
#pragma once

#include <chrono>

namespace sonarith::disc {

enum class Effort {
    repair, ///< read and compare as often as needed, while the time allows it
    once,   ///< one attempt
    none,   ///< no attempt: silence is delivered for the sector
};

class ReadEffort {
  public:
    using Duration = std::chrono::nanoseconds;

    struct Plan {
        Effort effort = Effort::none;
        Duration limit{0}; ///< the time for this sector; see AudioSectors::next
    };

    /// The effort for the next sector when bad sectors have cost `repairTime` in this read so far.
    [[nodiscard]] Plan plan(Duration repairTime) const;
    /// Ends a read in which bad sectors cost `repairTime`. The next read has the whole budget if
    /// this read stayed within its own budget, else half of this read's budget, but at least
    /// `leastBudget`.
    void finish(Duration repairTime);

    /// The budget for repairs in one read. When it is used up, single attempts have the same amount
    /// of time again. The budget equals the duration of the player's read-ahead: repairs that take
    /// longer interrupt the sound.
    static constexpr Duration wholeBudget = std::chrono::seconds(4);
    /// The budget after many bad reads in a row: the playing time of one read (a third of a
    /// second). With the same time again for single attempts, reading a ruined disc takes about
    /// twice its playing time.
    static constexpr Duration leastBudget = std::chrono::milliseconds(333);

  private:
    Duration budget_ = wholeBudget;
};

} // namespace sonarith::disc
