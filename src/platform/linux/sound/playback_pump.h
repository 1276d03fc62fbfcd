// SPDX-License-Identifier: GPL-3.0-or-later
// Transfers the software sound card's mix to a device: the card puts frames into a queue without
// blocking, and a separate thread writes them to the device. The device is opened when there is
// sound and closed after a few seconds of silence. The pump calls no sound library itself.
#pragma once

#include <chrono>
#include <memory>
#include <span>

#include "platform/linux/sound/abandonable_thread.h"
#include "platform/linux/sound/device_report.h"
#include "platform/linux/sound/pcm_stream.h"
#include "platform/linux/sound/playback_timing.h"
#include "platform/linux/sound/sound_card.h"

namespace sonarith::sound {

class PlaybackFeed;

class PlaybackPump : public SpeakerSink {
  public:
    /// `open` is called whenever there is sound while the device is closed, but not within
    /// `timing.retryAfter` after the device was lost or could not be opened. `open` and `report`
    /// must own what they use. If no thread can be started, the device counts as lost, and `play`
    /// tries again to start a thread after `retryAfter`.
    explicit PlaybackPump(OpenPlayback open, PlaybackTiming timing = {}, ReportDevice report = {},
                          ThreadStarter starter = startThread);
    ~PlaybackPump() override;
    PlaybackPump(const PlaybackPump&) = delete;
    PlaybackPump& operator=(const PlaybackPump&) = delete;

    void play(std::span<const StereoFrame> frames) override;

  private:
    void start();

    std::shared_ptr<PlaybackFeed> feed_; ///< shared with the thread, which may outlive this object
    PlaybackTiming timing_;
    ReportDevice report_;
    OpenPlayback open_;
    ThreadStarter starter_;
    std::chrono::steady_clock::time_point nextStart_; ///< of the next attempt to start a thread
    AbandonableThread thread_;
};

} // namespace sonarith::sound
