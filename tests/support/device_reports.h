// SPDX-License-Identifier: GPL-3.0-or-later
// Stores the reports of a playback or capture pump about its device. Any thread may add and
// read reports.
#pragma once

#include <algorithm>
#include <mutex>
#include <vector>

#include "platform/linux/sound/device_report.h"

namespace sonarith::fakes {

class DeviceReports {
  public:
    [[nodiscard]] sound::ReportDevice sink() {
        return [this](sound::DeviceState state) {
            const std::lock_guard lock(mutex_);
            states_.push_back(state);
        };
    }
    /// Whether `state` has been reported.
    [[nodiscard]] bool hold(sound::DeviceState state) {
        const std::lock_guard lock(mutex_);
        return std::find(states_.begin(), states_.end(), state) != states_.end();
    }
    [[nodiscard]] std::vector<sound::DeviceState> states() {
        const std::lock_guard lock(mutex_);
        return states_;
    }

  private:
    std::mutex mutex_;
    std::vector<sound::DeviceState> states_;
};

} // namespace sonarith::fakes
