// SPDX-License-Identifier: GPL-3.0-or-later
// Brings what a device hears to a line of the card, on a thread of its own. The device is open for
// as long as this object lives. It knows no sound library, and it never holds the card: where the
// device has nothing, the line is silent.
#pragma once

#include <chrono>
#include <memory>
#include <span>

#include "platform/linux/sound/abandonable_thread.h"
#include "platform/linux/sound/device_report.h"
#include "platform/linux/sound/pcm_stream.h"
#include "platform/linux/sound/sample_source.h"

namespace sonarith::sound {

/// The times that the pump goes by; none was measured.
struct CaptureTiming {
    /// A device that was lost or cannot be opened is tried again no sooner than this.
    std::chrono::milliseconds retryAfter{2000};
    /// The destructor waits so long for a device that does not return from a call. The window waits
    /// with it; one that works takes a few milliseconds.
    std::chrono::milliseconds patience{150};
};

struct CaptureBacklog;

class CapturePump : public SampleSource {
  public:
    /// `open` is called at once, and again after a loss; both functions must own what they use.
    /// A loss is reported when the device cannot be opened again, twice in a row at the start: the
    /// first failure is what `opening` is for.
    explicit CapturePump(OpenCapture open, CaptureTiming timing = {}, ReportDevice report = {});
    ~CapturePump() override;
    CapturePump(const CapturePump&) = delete;
    CapturePump& operator=(const CapturePump&) = delete;

    /// How the last attempt to open the device ended; waits `atMost` for the first one.
    enum class Opening { pending, open, failed };
    [[nodiscard]] Opening opening(std::chrono::milliseconds atMost);

    /// Always fills the whole block, with silence where the device has nothing.
    [[nodiscard]] Pulled pull(std::span<StereoFrame> block) override;

  private:
    std::shared_ptr<CaptureBacklog> backlog_;
    CaptureTiming timing_;
    ReportDevice report_;
    AbandonableThread thread_;
};

} // namespace sonarith::sound
