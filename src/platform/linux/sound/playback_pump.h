// SPDX-License-Identifier: GPL-3.0-or-later
// Brings the speakers' mix to a device, on a thread of its own: the card hands its frames over and
// goes on. The device is open only while there is something to hear. It knows no sound library.
#pragma once

#include <chrono>
#include <memory>
#include <span>

#include "platform/linux/sound/abandonable_thread.h"
#include "platform/linux/sound/pcm_stream.h"
#include "platform/linux/sound/sound_card.h"

namespace sonarith::sound {

/// The times that the pump goes by. None was measured: they are what a person does not mind.
struct PlaybackTiming {
    /// No frames for so long: the sound has ended for now. Longer than the card is late under load.
    std::chrono::milliseconds dryAfter{60};
    /// How long the frames of one batch wait for its last ones.
    std::chrono::milliseconds batchWait{25};
    /// After so much silence, or without any frames for so long, the device is closed.
    std::chrono::milliseconds closeAfter{3000};
    /// A device that was lost or cannot be opened is tried again no sooner than this.
    std::chrono::milliseconds retryAfter{2000};
    /// A device that takes nothing for so long is given up.
    std::chrono::milliseconds stallLimit{2000};
    /// The destructor waits so long for a device that does not come back from a call.
    std::chrono::milliseconds patience{500};
};

class PlaybackPump : public SpeakerSink {
  public:
    /// `open` is called at the first sound, and again after a loss; it must own what it uses.
    explicit PlaybackPump(OpenPlayback open, PlaybackTiming timing = {});
    ~PlaybackPump() override;
    PlaybackPump(const PlaybackPump&) = delete;
    PlaybackPump& operator=(const PlaybackPump&) = delete;

    void play(std::span<const StereoFrame> frames) override;

  private:
    struct Shared;
    std::shared_ptr<Shared> shared_;
    PlaybackTiming timing_;
    AbandonableThread thread_;
};

} // namespace sonarith::sound
