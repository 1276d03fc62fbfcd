// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/playback_pump.h"

#include <chrono>
#include <functional>
#include <optional>
#include <utility>

#include "platform/linux/sound/playback_feed.h"
#include "platform/linux/sound/playback_session.h"

namespace sonarith::sound {

namespace {

/// The body of the thread: opens the device when there is sound, and opens it again after it was
/// lost.
void pump(PlaybackFeed& feed, const OpenPlayback& open, const PlaybackTiming& timing,
          const ReportDevice& report) {
    using Clock = std::chrono::steady_clock;
    using Ending = PlaybackSession::Ending;
    std::optional<Clock::time_point> nextTry;
    const std::function<void()> onPlays = [&] {
        report(DeviceState::works);
    };
    while (true) {
        feed.awaitSound();
        if (feed.isLeaving()) {
            return;
        }
        if (nextTry && Clock::now() < *nextTry) {
            feed.restUntil(*nextTry);
            feed.forgetQueued(); // these frames are outdated
            continue;
        }
        Ending ending = Ending::lost;
        if (const std::unique_ptr<PcmPlayback> device = open()) {
            feed.setDeviceOpen(true);
            ending = PlaybackSession(*device, feed, timing, onPlays).run();
            feed.setDeviceOpen(false);
        }
        if (ending == Ending::leaving || feed.isLeaving()) {
            return;
        }
        if (ending == Ending::lost) {
            report(DeviceState::lost);
            nextTry = Clock::now() + timing.retryAfter;
            feed.forgetQueued();
        }
    }
}

} // namespace

PlaybackPump::PlaybackPump(OpenPlayback open, PlaybackTiming timing, ReportDevice report,
                           ThreadStarter starter)
    : feed_(std::make_shared<PlaybackFeed>()),
      timing_(timing),
      report_(report ? std::move(report) : [](DeviceState) {}),
      open_(std::move(open)),
      starter_(std::move(starter)) {
    start();
}

void PlaybackPump::start() {
    const Status started = thread_.start([feed = feed_, open = open_, timing = timing_,
                                          report = report_] { pump(*feed, open, timing, report); },
                                         starter_);
    if (!started.ok()) {
        report_(DeviceState::lost);
        nextStart_ = std::chrono::steady_clock::now() + timing_.retryAfter;
    }
}

PlaybackPump::~PlaybackPump() {
    feed_->leave();
    thread_.leave(timing_.patience);
    report_(DeviceState::unused);
}

void PlaybackPump::play(std::span<const StereoFrame> frames) {
    if (!thread_.started()) {
        if (std::chrono::steady_clock::now() < nextStart_) {
            return; // the frames would be outdated when a thread can be started
        }
        start();
    }
    feed_->add(frames);
}

} // namespace sonarith::sound
