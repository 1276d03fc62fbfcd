// SPDX-License-Identifier: GPL-3.0-or-later
// Limits how often a view shows values that change more often than a user can see.
#pragma once

#include <chrono>
#include <functional>

#include <QTimer>

namespace sonarith {

/// The interval for moving pictures: the meter draws every 10 ms, so it shows twenty pictures a
/// second, which still seem to move.
inline constexpr std::chrono::milliseconds pictureInterval{40};

class LimitedPace {
  public:
    /// When a request is shown that begins an interval. `delayed` shows several changes that come
    /// together as one.
    enum class First { atOnce, delayed };

    /// `show` shows the present value. All objects that `show` uses must outlive this object.
    LimitedPace(std::chrono::milliseconds interval, First first, std::function<void()> show);

    /// Runs `show` when the present interval ends, once for all requests until then. If no interval
    /// is running, begins one; `first` decides whether `show` then runs at once or at its end.
    void request();

  private:
    void show();

    First first_;
    std::function<void()> show_;
    QTimer interval_;
    bool requested_ = false; ///< since the interval began
};

} // namespace sonarith
