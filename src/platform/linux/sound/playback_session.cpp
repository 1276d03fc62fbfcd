// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/playback_session.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <utility>
#include <vector>

#include "platform/linux/sound/sound_card.h"

namespace sonarith::sound {

namespace {

using Clock = std::chrono::steady_clock;

/// The number of frames that are written before the device is started: 100 ms. So the device does
/// not underrun if the card's next frames are up to PlaybackTiming::dryAfter late.
constexpr std::size_t prefillFrames = frameRate / 10;
/// The silence that is written after the end of a sound: 50 ms. The device is stopped while it
/// plays this silence, so that the sound is complete and the device does not underrun.
constexpr std::size_t paddingFrames = frameRate / 20;
/// A device that has accepted half a second of sound has certainly played some of it, because its
/// buffer is shorter.
constexpr std::size_t certainFrames = frameRate / 2;
/// The longest single wait for space in the device's buffer, and so the longest time until the
/// thread notices that it must end.
constexpr std::chrono::milliseconds roomWait{100};
/// The most frames of the card in one write: 30 ms, far less than the device's buffer contains.
/// Smaller writes would wake the sound server, a separate process, more often.
constexpr std::size_t batchFrames = 3 * blockFrames;
/// The delay between two checks of whether the end of a sound has been played. The thread also
/// rests for this time after the second of two consecutive waits that report space (awaitRoom).
constexpr std::chrono::milliseconds shortRest{10};
/// The device may report this many underruns or suspensions in a row without accepting a frame. If
/// it reports one more, it counts as lost.
constexpr int maxFruitlessRecoveries = 3;

} // namespace

PlaybackSession::Ending PlaybackSession::run() {
    std::vector<StereoFrame> batch(batchFrames);
    while (!feed_.isLeaving()) {
        const auto rest = phase_ == Phase::draining ? shortRest : timing_.dryAfter;
        const std::size_t count = feed_.take(batch, rest, timing_.batchWait);
        const bool playing = count > 0 ? playBlock(std::span(batch).first(count)) : goOnDry();
        if (!playing) {
            return feed_.isLeaving() ? Ending::leaving : Ending::lost;
        }
        if (silentForTooLong()) {
            device_.stop();
            notePlaying();
            return Ending::quiet;
        }
    }
    return Ending::leaving;
}

bool PlaybackSession::playBlock(std::span<const StereoFrame> frames) {
    silentFrames_ = isSilent(frames) ? silentFrames_ + frames.size() : 0;
    if (phase_ == Phase::stopped && !prepareAgain()) {
        return false;
    }
    if (phase_ == Phase::draining) {
        phase_ = Phase::running;
    }
    return writeAll(frames);
}

/// Called when no frames have arrived for a while: plays the end of the sound, then stops the
/// device, so that the device does not underrun again and again. Returns false if the device is
/// lost or the thread is asked to end.
bool PlaybackSession::goOnDry() {
    switch (phase_) {
    case Phase::filling: // fewer frames than the prefill were written
    case Phase::running:
        if (!writeAll(std::vector<StereoFrame>(paddingFrames)) || !startIfFilling()) {
            return false;
        }
        phase_ = Phase::draining;
        drainingSince_ = Clock::now();
        return true;
    case Phase::draining:
        // A negative result of queued() most likely means an underrun: everything has been played.
        if (device_.queued() <= static_cast<long>(paddingFrames) / 2 ||
            Clock::now() - drainingSince_ > timing_.stallLimit) {
            device_.stop();
            phase_ = Phase::stopped;
            stoppedAt_ = Clock::now();
        }
        return true;
    case Phase::stopped:
        return true;
    }
    return true;
}

bool PlaybackSession::silentForTooLong() const {
    const auto silentFor =
        std::chrono::milliseconds{static_cast<std::int64_t>(silentFrames_) * 1000 / frameRate};
    return silentFor >= timing_.closeAfter ||
           (phase_ == Phase::stopped && Clock::now() - stoppedAt_ >= timing_.closeAfter);
}

void PlaybackSession::notePlaying() {
    if (!std::exchange(playing_, true)) {
        onPlays_();
    }
}

bool PlaybackSession::prepareAgain() {
    phase_ = Phase::filling;
    written_ = 0;
    return device_.prepare() >= 0;
}

bool PlaybackSession::startIfFilling() {
    if (phase_ != Phase::filling) {
        return true;
    }
    phase_ = Phase::running;
    return device_.start() >= 0;
}

/// Writes all of `frames`. Returns false if the device is lost or the thread is asked to end.
bool PlaybackSession::writeAll(std::span<const StereoFrame> frames) {
    int recoveries = 0;
    auto stalledSince = Clock::now();
    while (!frames.empty()) {
        const long result = device_.write(frames);
        if (result > 0) {
            frames = frames.subspan(std::min(static_cast<std::size_t>(result), frames.size()));
            written_ += static_cast<std::size_t>(result);
            recoveries = 0;
            stalledSince = Clock::now();
            if (written_ >= certainFrames) {
                notePlaying();
            }
            if (written_ >= prefillFrames && !startIfFilling()) {
                return false;
            }
        } else if (result == 0 || result == -EAGAIN) {
            // The device's buffer may be smaller than the prefill: then the device is started when
            // its buffer is full.
            if (!startIfFilling() || !awaitRoom(stalledSince)) {
                return false;
            }
        } else if (result == -EPIPE || result == -ESTRPIPE) {
            // The next iteration writes the rejected frames again.
            if (++recoveries > maxFruitlessRecoveries || !prepareAgain()) {
                return false;
            }
        } else if (result != -EINTR) {
            return false;
        }
    }
    return true;
}

bool PlaybackSession::awaitRoom(Clock::time_point stalledSince) {
    const int room = device_.waitForRoom(roomWait);
    if (feed_.isLeaving() || Clock::now() - stalledSince > timing_.stallLimit) {
        return false;
    }
    if (room > 0 && std::exchange(hadRoom_, true)) {
        // Some devices report space and then accept nothing; the delay prevents a busy loop.
        feed_.restUntil(Clock::now() + shortRest);
    } else if (room <= 0) {
        hadRoom_ = false;
    }
    // An underrun or a suspension is handled after the next write, which reports it again.
    return room >= 0 || room == -EPIPE || room == -ESTRPIPE || room == -EINTR;
}

} // namespace sonarith::sound
