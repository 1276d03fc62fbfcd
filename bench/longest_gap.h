// SPDX-License-Identifier: GPL-3.0-or-later
// The longest time for which an event loop handled nothing, by an event that comes every
// millisecond: so long would a click have had to wait.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace sonarith::bench {

class LongestGap {
  public:
    /// At each event. Gaps outside of what is measured are no matter.
    void beat(bool measured = true) {
        const auto now = Clock::now();
        if (measured) {
            longest_ = std::max(longest_, now - last_);
        }
        last_ = now;
        ++beats_;
    }
    /// What came before does not count.
    void restart() { last_ = Clock::now(); }

    [[nodiscard]] double milliseconds() const {
        return std::chrono::duration<double, std::milli>(longest_).count();
    }
    [[nodiscard]] int beats() const { return beats_; }

    /// "DOING: longest time without an event ..."
    static void print(const char* doing, double milliseconds) {
        constexpr double limit = 50;
        std::printf("%s: longest time without an event %.1f ms, %.2f of the limit of 50 ms\n",
                    doing, milliseconds, milliseconds / limit);
    }

  private:
    using Clock = std::chrono::steady_clock;
    Clock::time_point last_ = Clock::now();
    Clock::duration longest_{};
    int beats_ = 0;
};

} // namespace sonarith::bench
