// SPDX-License-Identifier: GPL-3.0-or-later
// Measures the longest time in which an event loop handled no event: a click would have had to wait
// that long. The benchmark creates a timer event every millisecond, and this class measures the
// times between these events.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>

#include "result_limits.h"

namespace sonarith::bench {

class LongestGap {
  public:
    /// Must be called by the handler of each timer event. The time since the previous call counts
    /// only if `measured` is true.
    void beat(bool measured = true) {
        const auto now = Clock::now();
        if (measured) {
            longest_ = std::max(longest_, now - last_);
        }
        last_ = now;
        ++beats_;
    }
    /// The time from the previous call of beat() until now does not count.
    void restart() { last_ = Clock::now(); }

    [[nodiscard]] double milliseconds() const {
        return std::chrono::duration<double, std::milli>(longest_).count();
    }
    [[nodiscard]] int beats() const { return beats_; }

    /// Prints "DOING: longest time without an event ..." and compares the time with its limit.
    static void report(const char* doing, double milliseconds, Limits& limits) {
        constexpr double limit = 50;
        std::printf("%s: longest time without an event %.1f ms, %.2f of the limit of 50 ms\n",
                    doing, milliseconds, milliseconds / limit);
        limits.check((std::string(doing) + ": longest time without an event, in ms").c_str(),
                     milliseconds, limit);
    }

  private:
    using Clock = std::chrono::steady_clock;
    Clock::time_point last_ = Clock::now();
    Clock::duration longest_{};
    int beats_ = 0;
};

} // namespace sonarith::bench
