// SPDX-License-Identifier: GPL-3.0-or-later
// Transfers the sound of a capture device to a line of the software sound card, on a separate
// thread. During its lifetime, the pump tries to keep the device open. The pump calls no sound
// library itself. It never blocks the card: without data from the device, the line is silent.
#pragma once

#include <chrono>
#include <memory>
#include <span>

#include "platform/linux/sound/abandonable_thread.h"
#include "platform/linux/sound/device_report.h"
#include "platform/linux/sound/pcm_stream.h"
#include "platform/linux/sound/sample_source.h"

namespace sonarith::sound {

/// The pump's time limits. The values are estimates and not based on measurements.
struct CaptureTiming {
    /// If the device was lost or cannot be opened, the pump waits at least this time before it
    /// tries to open the device again.
    std::chrono::milliseconds retryAfter{2000};
    /// How long the pump's destructor waits for a device call that does not return. The program's
    /// window is blocked during that wait. A read from a working device, or a wait for its frames,
    /// takes at most 20 ms.
    std::chrono::milliseconds patience{150};
};

struct CaptureBacklog;

class CapturePump : public SampleSource {
  public:
    /// `open` is called on the pump's thread, immediately and again after each failure or loss.
    /// `open` and `report` must own what they use. If the first attempt to open the device fails,
    /// only opening() shows this failure. Each later attempt that fails is reported. A loss of the
    /// open device is reported only if reopening fails. If no thread can be started, the input is
    /// silent, `report` is called with DeviceState::lost, and opening() returns Opening::failed.
    explicit CapturePump(OpenCapture open, CaptureTiming timing = {}, ReportDevice report = {},
                         const ThreadStarter& starter = startThread);
    ~CapturePump() override;
    CapturePump(const CapturePump&) = delete;
    CapturePump& operator=(const CapturePump&) = delete;

    enum class Opening { pending, open, failed };
    /// The result of the last attempt to open the device; waits at most `atMost` for the first
    /// result.
    [[nodiscard]] Opening opening(std::chrono::milliseconds atMost);

    /// Always fills the whole block; missing data is replaced by silence.
    [[nodiscard]] Pulled pull(std::span<StereoFrame> block) override;

  private:
    std::shared_ptr<CaptureBacklog> backlog_;
    CaptureTiming timing_;
    ReportDevice report_;
    AbandonableThread thread_;
};

} // namespace sonarith::sound
