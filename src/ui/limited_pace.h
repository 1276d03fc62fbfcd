// SPDX-License-Identifier: GPL-3.0-or-later
// Limits how often a view shows values that change more often than a user can see.
#pragma once

#include <chrono>
#include <functional>

#include <QTimer>

namespace sonarith {

/// The interval for moving pictures. A new interval begins with the first request after the last
/// interval. The meter draws every 10 ms, so a picture is shown every 40 to 50 ms; at this pace,
/// the pictures still seem to move.
inline constexpr std::chrono::milliseconds pictureInterval{40};

class LimitedPace {
  public:
    /// Whether the request that begins an interval is shown at once or at the end of the interval.
    /// With `delayed`, changes that follow each other closely are shown together.
    enum class First { atOnce, delayed };

    /// `show` shows the present value. All objects that `show` uses must outlive this object.
    LimitedPace(std::chrono::milliseconds interval, First first, std::function<void()> show);

    /// Runs `show` when the present interval ends, once for all requests until then. If no interval
    /// is running, begins one; `first` decides whether `show` then runs at once or at the end of
    /// that interval.
    void request();

  private:
    void show();

    First first_;
    std::function<void()> show_;
    QTimer interval_;
    bool requested_ = false; ///< since the interval began
};

} // namespace sonarith
