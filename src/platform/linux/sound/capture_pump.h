// SPDX-License-Identifier: GPL-3.0-or-later
// Brings what a device hears to a line of the card, on a thread of its own. The device is open for
// as long as this object lives. It knows no sound library, and it never holds the card: where the
// device has nothing, the line is silent.
#pragma once

#include <chrono>
#include <memory>
#include <span>

#include "platform/linux/sound/abandonable_thread.h"
#include "platform/linux/sound/pcm_stream.h"
#include "platform/linux/sound/sample_source.h"

namespace sonarith::sound {

/// The times that the pump goes by; none was measured.
struct CaptureTiming {
    /// A device that was lost or cannot be opened is tried again no sooner than this.
    std::chrono::milliseconds retryAfter{2000};
    /// The destructor waits so long for a device that does not come back from a call.
    std::chrono::milliseconds patience{500};
};

struct CaptureBacklog;

class CapturePump : public SampleSource {
  public:
    /// `open` is called at once, and again after a loss; it must own what it uses.
    explicit CapturePump(OpenCapture open, CaptureTiming timing = {});
    ~CapturePump() override;
    CapturePump(const CapturePump&) = delete;
    CapturePump& operator=(const CapturePump&) = delete;

    /// Always fills the whole block, with silence where the device has nothing.
    [[nodiscard]] Pulled pull(std::span<StereoFrame> block) override;

  private:
    std::shared_ptr<CaptureBacklog> backlog_;
    CaptureTiming timing_;
    AbandonableThread thread_;
};

} // namespace sonarith::sound
