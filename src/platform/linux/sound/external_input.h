// SPDX-License-Identifier: GPL-3.0-or-later
// The external input of the sound card's recorder. All objects that use the input at the same time
// share one open device, which is closed when no object uses it any more. sound_card.h contains the
// line that this input feeds.
#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "platform/linux/sound/capture_pump.h"

namespace sonarith::sound {

/// Thread-safe.
class ExternalInput {
  public:
    /// `name` is shown to the user. `open` must own what it uses.
    ExternalInput(std::string name, OpenCapture open, ReportDevice report = {},
                  CaptureTiming timing = {});

    [[nodiscard]] const std::string& name() const { return name_; }
    /// Returns the running pump, or starts one. The device is closed when the last owner releases
    /// the pump. Returns at once: the device is opened on a separate thread, and the pump delivers
    /// silence while it has no data.
    [[nodiscard]] std::shared_ptr<CapturePump> acquire();
    /// Whether `source` is the running pump.
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
