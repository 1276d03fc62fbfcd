// SPDX-License-Identifier: GPL-3.0-or-later
// Random fractions chosen by the test.
#pragma once

#include "platform/random.h"

namespace sonarith::test {

class FakeRandom final : public Random {
  public:
    /// The result of every draw.
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
