// SPDX-License-Identifier: GPL-3.0-or-later
// Plays on one open device, from the first frames until the device is closed. Starts the device
// when its buffer contains the beginning of a sound, plays each sound to its end, and recovers from
// underruns.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <span>

#include "platform/linux/sound/pcm_stream.h"
#include "platform/linux/sound/playback_feed.h"
#include "platform/linux/sound/playback_timing.h"

namespace sonarith::sound {

class PlaybackSession {
  public:
    /// All four arguments must outlive this object. `onPlays` is called at most once, when it is
    /// certain that the device has played sound.
    PlaybackSession(PcmPlayback& device, PlaybackFeed& feed, const PlaybackTiming& timing,
                    const std::function<void()>& onPlays)
        : device_(device), feed_(feed), timing_(timing), onPlays_(onPlays) {}

    /// Why the session ended: after a long silence, because the device accepts no more frames, or
    /// because PlaybackFeed::leave() was called.
    enum class Ending { quiet, lost, leaving };
    /// Plays until the session ends for one of these reasons.
    Ending run();

  private:
    enum class Phase {
        filling,  ///< prepared, not started yet
        running,  ///< started
        draining, ///< started; no more frames arrive, and the end of the sound is played
        stopped,  ///< open and silent
    };

    bool playBlock(std::span<const StereoFrame> frames);
    bool goOnDry();
    [[nodiscard]] bool silentForTooLong() const;
    void notePlaying();
    bool prepareAgain();
    bool startIfFilling();
    bool writeAll(std::span<const StereoFrame> frames);
    bool awaitRoom(std::chrono::steady_clock::time_point stalledSince);

    PcmPlayback& device_;
    PlaybackFeed& feed_;
    const PlaybackTiming& timing_;
    const std::function<void()>& onPlays_;
    bool playing_ = false; ///< onPlays_ was called
    Phase phase_ = Phase::filling;
    std::size_t written_ = 0;      ///< frames written since the device was prepared
    std::size_t silentFrames_ = 0; ///< frames in the silent batches since the last sound
    bool hadRoom_ = false;         ///< the last wait for space reported space
    std::chrono::steady_clock::time_point drainingSince_{};
    std::chrono::steady_clock::time_point stoppedAt_{};
};

} // namespace sonarith::sound
