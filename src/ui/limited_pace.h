// SPDX-License-Identifier: GPL-3.0-or-later
// Limits how often a view shows values that change more often than a user can see.
#pragma once

#include <chrono>
#include <functional>

#include <QTimer>

namespace sonarith {

/// For moving pictures: 25 pictures a second, as in films and television.
inline constexpr std::chrono::milliseconds pictureInterval{40};

class LimitedPace {
  public:
    /// `show` shows the present value. It must be valid as long as this object.
    LimitedPace(std::chrono::milliseconds interval, std::function<void()> show);

    /// Runs `show` at once if it did not run within the last interval. Otherwise `show` runs when
    /// that interval ends, once for all requests until then.
    void request();

  private:
    std::function<void()> show_;
    QTimer pause_; ///< runs for one interval after each `show`
    bool requested_ = false;
};

} // namespace sonarith
