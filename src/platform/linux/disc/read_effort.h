// SPDX-License-Identifier: GPL-3.0-or-later
// How much time is spent on a damaged disc: a time budget for each read, which shrinks while reads
// keep using it up. Pure arithmetic on times that the caller measures; it reads nothing.
#pragma once

#include <chrono>

namespace sonarith::disc {

enum class Effort {
    repair, ///< read several times and compare, as often as needed and the time allows
    once,   ///< one attempt
    none,   ///< no attempt: silence is delivered for the sector
};

class ReadEffort {
  public:
    using Duration = std::chrono::nanoseconds;

    struct Plan {
        Effort effort = Effort::none;
        Duration limit{0}; ///< no further attempt at this sector begins after this time
    };

    /// The effort for the next sector when bad sectors have cost `repairTime` in this read so far.
    [[nodiscard]] Plan plan(Duration repairTime) const;
    /// Ends a read in which bad sectors cost `repairTime`. The next read has the whole budget if
    /// this read stayed within its own budget, else half of this read's budget, but at least
    /// `leastBudget`.
    void finish(Duration repairTime);

    /// The budget for repairs in one read; after that, single attempts have the same amount of
    /// time. The budget equals the duration of the player's read-ahead: a longer one would
    /// interrupt the sound anyway.
    static constexpr Duration wholeBudget = std::chrono::seconds(4);
    /// The budget after many bad reads in a row: the duration of one read (a third of a second of
    /// sound), so that a ruined disc takes little longer than its playing time.
    static constexpr Duration leastBudget = std::chrono::milliseconds(333);

  private:
    Duration budget_ = wholeBudget;
};

} // namespace sonarith::disc
