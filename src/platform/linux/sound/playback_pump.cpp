// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/playback_pump.h"

#include <chrono>
#include <optional>
#include <utility>

#include "platform/linux/sound/playback_feed.h"
#include "platform/linux/sound/playback_session.h"

namespace sonarith::sound {

namespace {

/// The thread: opens a device when there is something to hear, and again after a loss.
void pump(PlaybackFeed& feed, const OpenPlayback& open, const PlaybackTiming& timing) {
    using Clock = std::chrono::steady_clock;
    using Ending = PlaybackSession::Ending;
    std::optional<Clock::time_point> nextTry;
    while (true) {
        feed.awaitSound();
        if (feed.isLeaving()) {
            return;
        }
        if (nextTry && Clock::now() < *nextTry) {
            feed.restUntil(*nextTry);
            feed.forgetQueued(); // stale by now
            continue;
        }
        Ending ending = Ending::lost;
        if (const std::unique_ptr<PcmPlayback> device = open()) {
            feed.setDeviceOpen(true);
            ending = PlaybackSession(*device, feed, timing).run();
            feed.setDeviceOpen(false);
        }
        if (ending == Ending::leaving) {
            return;
        }
        if (ending == Ending::lost) {
            nextTry = Clock::now() + timing.retryAfter;
            feed.forgetQueued();
        }
    }
}

} // namespace

PlaybackPump::PlaybackPump(OpenPlayback open, PlaybackTiming timing)
    : feed_(std::make_shared<PlaybackFeed>()),
      timing_(timing),
      thread_([feed = feed_, open = std::move(open), timing] { pump(*feed, open, timing); }) {}

PlaybackPump::~PlaybackPump() {
    feed_->leave();
    thread_.leave(timing_.patience);
}

void PlaybackPump::play(std::span<const StereoFrame> frames) {
    feed_->add(frames);
}

} // namespace sonarith::sound
