// SPDX-License-Identifier: GPL-3.0-or-later
// Generates random fractions; the clock provides the seed. For file names, not for secrets.
#pragma once

#include <cstdint>
#include <functional>
#include <random>

#include "platform/random.h"

namespace sonarith {

class ClockRandom final : public Random {
  public:
    /// The machine's wall clock in nanoseconds.
    [[nodiscard]] static std::uint64_t clockReading();

    /// Seeds the generator. `clock` is read at each seeding.
    explicit ClockRandom(std::function<std::uint64_t()> clock = clockReading);

    void reseedFromClock() override;
    [[nodiscard]] float fraction() override;

  private:
    std::function<std::uint64_t()> clock_;
    std::mt19937 generator_;
};

} // namespace sonarith
