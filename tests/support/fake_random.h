// SPDX-License-Identifier: GPL-3.0-or-later
// A random generator for tests: returns the fraction that the test has set, and counts the calls
// of each function.
#pragma once

#include "platform/random.h"

namespace sonarith::test {

class FakeRandom final : public Random {
  public:
    /// The result of fraction().
    float next = 0.5F;
    int reseeds = 0;
    int draws = 0;

    void reseedFromClock() override { ++reseeds; }
    [[nodiscard]] float fraction() override {
        ++draws;
        return next;
    }
};

} // namespace sonarith::test
