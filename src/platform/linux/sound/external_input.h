// SPDX-License-Identifier: GPL-3.0-or-later
// The input device that the recorder may listen to: opened once for all that need it at a time,
// and closed when nothing does. It is not the line of the card that it feeds.
#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "platform/linux/sound/capture_pump.h"

namespace sonarith::sound {

/// Any thread may call any member.
class ExternalInput {
  public:
    /// `name` is shown to the user. `open` must own what it uses.
    ExternalInput(std::string name, OpenCapture open, ReportDevice report = {},
                  CaptureTiming timing = {});

    [[nodiscard]] const std::string& name() const { return name_; }
    /// The running input, which closes when the last owner releases it. Returns at once: the device
    /// is opened on a thread of its own, and is silent where it has nothing.
    [[nodiscard]] std::shared_ptr<CapturePump> acquire();
    /// Whether `source` is what `acquire` returns now.
    [[nodiscard]] bool isRunning(const SampleSource& source);

  private:
    const std::string name_;
    const OpenCapture open_;
    const ReportDevice report_;
    const CaptureTiming timing_;
    std::mutex mutex_;
    std::weak_ptr<CapturePump> running_;
};

} // namespace sonarith::sound
