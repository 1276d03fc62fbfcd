// SPDX-License-Identifier: GPL-3.0-or-later
// A sound device that was lost and one that is back, as sentences for the user: each once, however
// often the device is tried. It decides nothing.
#pragma once

#include <memory>
#include <mutex>
#include <set>
#include <string>

#include "platform/linux/sound/device_report.h"
#include "platform/notices.h"

namespace sonarith::sound {

enum class SoundDevice { output, input };

/// Any thread may call any member.
class DeviceNotices {
  public:
    explicit DeviceNotices(Notices& notices) : notices_(&notices) {}
    /// Nothing is reported any more; the Notices are not used after this returns. Threads that hang
    /// may keep this object for longer.
    void mute();

    void report(SoundDevice kind, const std::string& name, DeviceState state);

  private:
    std::mutex mutex_;
    Notices* notices_;           ///< a null pointer once it is mute
    std::set<std::string> lost_; ///< causes
};

/// What a pump is given for the device `name`. It keeps `notices`.
[[nodiscard]] ReportDevice reportTo(std::shared_ptr<DeviceNotices> notices, SoundDevice kind,
                                    std::string name);

} // namespace sonarith::sound
