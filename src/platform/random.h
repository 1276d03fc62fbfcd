// SPDX-License-Identifier: GPL-3.0-or-later
// Random fractions for the logic.
#pragma once

namespace sonarith {

class Random {
  public:
    virtual ~Random() = default;
    virtual void reseedFromClock() = 0;
    /// A single-precision fraction from 0 up to, but not including, 1.
    [[nodiscard]] virtual float fraction() = 0;
};

} // namespace sonarith
