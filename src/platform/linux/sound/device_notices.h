// SPDX-License-Identifier: GPL-3.0-or-later
// Notices for the user about a sound device that was lost or works again: each once, however often
// the device is tried. It decides nothing.
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
    /// Stops all reports; the Notices are not used after this returns. Threads that hang may keep
    /// this object longer.
    void mute();

    void report(SoundDevice kind, const std::string& name, DeviceState state);

  private:
    std::mutex mutex_;
    Notices* notices_;           ///< a null pointer after mute()
    std::set<std::string> lost_; ///< causes
};

/// The report function for the pump of device `name`. It keeps `notices` alive.
[[nodiscard]] ReportDevice reportTo(std::shared_ptr<DeviceNotices> notices, SoundDevice kind,
                                    std::string name);

} // namespace sonarith::sound
