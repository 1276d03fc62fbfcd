// SPDX-License-Identifier: GPL-3.0-or-later
// Limits how often a view shows values that change more often than a user can see.
#pragma once

#include <chrono>
#include <functional>

#include <QTimer>

namespace sonarith {

/// The interval for moving pictures: short enough that they seem to move continuously.
inline constexpr std::chrono::milliseconds pictureInterval{50};

/// Shows a value at most once in each interval. Every interval begins when the clock reads a
/// multiple of the interval's length. So views that change at the same moments, such as the bar and
/// the trace of the level meter, are also shown at the same moments, and Qt paints them together.
class LimitedPace {
  public:
    using Clock = std::function<std::chrono::nanoseconds()>; ///< a monotonic clock
    [[nodiscard]] static std::chrono::nanoseconds monotonicNow();

    /// `show` shows the present value. All objects that `show` uses must outlive this object.
    LimitedPace(std::chrono::milliseconds interval, std::function<void()> show,
                Clock now = monotonicNow);

    /// Runs `show` now if it has not run in the present interval. Otherwise, the first
    /// request after the end of this interval runs `show`; if none arrives soon, a timer runs it.
    void request();

  private:
    void show(std::chrono::nanoseconds::rep interval);

    std::chrono::milliseconds length_;
    std::function<void()> show_;
    Clock now_;
    std::chrono::nanoseconds::rep lastShown_ = -1; ///< number of the interval when show_ last ran
    /// Started by a request that does not run show_ at once. Runs show_ if no request arrives soon
    /// after the end of the interval.
    QTimer tail_;
};

} // namespace sonarith
