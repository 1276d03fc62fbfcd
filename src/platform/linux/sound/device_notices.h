// SPDX-License-Identifier: GPL-3.0-or-later
// Notifies the user that a sound device was lost or works again. Each change causes one notice,
// however often the device is tried. The devices are not controlled here.
#pragma once

#include <memory>
#include <mutex>
#include <set>
#include <string>

#include "platform/linux/sound/device_report.h"
#include "platform/notices.h"

namespace sonarith::sound {

enum class SoundDevice { output, input };

/// Thread-safe.
class DeviceNotices {
  public:
    explicit DeviceNotices(Notices& notices) : notices_(&notices) {}
    /// Stops all reports: after this returns, the Notices object is not used any more and may be
    /// destroyed. Hanging threads may keep these DeviceNotices alive after that.
    void mute();

    void report(SoundDevice kind, const std::string& name, DeviceState state);

  private:
    std::mutex mutex_;
    Notices* notices_;           ///< a null pointer after mute()
    std::set<std::string> lost_; ///< the cause of the notice about each lost device
};

/// Returns the report function for the pump of device `name`. That function keeps `notices` alive.
[[nodiscard]] ReportDevice reportTo(std::shared_ptr<DeviceNotices> notices, SoundDevice kind,
                                    std::string name);

} // namespace sonarith::sound
