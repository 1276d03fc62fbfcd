// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/clock_random.h"

#include <chrono>
#include <utility>

namespace sonarith {

std::uint64_t ClockRandom::clockReading() {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(sinceEpoch).count());
}

ClockRandom::ClockRandom(std::function<std::uint64_t()> clock) : clock_(std::move(clock)) {
    reseedFromClock();
}

void ClockRandom::reseedFromClock() {
    const std::uint64_t reading = clock_();
    // Both halves of the reading are used: the low half alone repeats every four seconds.
    std::seed_seq seed{static_cast<std::uint32_t>(reading),
                       static_cast<std::uint32_t>(reading >> 32)};
    generator_.seed(seed);
}

float ClockRandom::fraction() {
    // A float has 24 significant bits: a 24-bit number scaled by 2^-24 is never rounded up to 1.
    constexpr float step = 1.0F / 16777216.0F;
    return static_cast<float>(generator_() >> 8) * step;
}

} // namespace sonarith
