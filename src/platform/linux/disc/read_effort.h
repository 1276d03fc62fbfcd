// SPDX-License-Identifier: GPL-3.0-or-later
// How hard a damaged disc is tried: a time budget for each read, that shrinks while reads keep
// using it up. Pure arithmetic on times that the caller measures; it reads nothing.
#pragma once

#include <chrono>

namespace sonarith::disc {

enum class Effort {
    repair, ///< read several times and compare, as often as it takes and the time allows
    once,   ///< one attempt
    none,   ///< not at all: silence stands for the sector
};

class ReadEffort {
  public:
    using Duration = std::chrono::nanoseconds;

    struct Plan {
        Effort effort = Effort::none;
        Duration limit{0}; ///< begin no further attempt at this sector after this time
    };

    /// What to do for the next sector when bad sectors have cost `trouble` in this read so far.
    [[nodiscard]] Plan plan(Duration trouble) const;
    /// A read has ended in which bad sectors cost `trouble`. The next one has the whole budget
    /// again if this one kept within its own, and half of it otherwise.
    void finish(Duration trouble);

    /// The budget for repairs in one read; as much time again is there for single attempts. As
    /// long as the player's read-ahead lasts: more would be heard as a stop anyway.
    static constexpr Duration wholeBudget = std::chrono::seconds(4);
    /// The budget after many bad reads in a row: that of a third of a second of sound, so that a
    /// ruined disc takes little longer than it would play.
    static constexpr Duration leastBudget = std::chrono::milliseconds(333);

  private:
    Duration budget_ = wholeBudget;
};

} // namespace sonarith::disc
