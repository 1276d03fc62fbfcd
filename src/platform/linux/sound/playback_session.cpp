// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/playback_session.h"

#include <algorithm>
#include <cerrno>
#include <utility>
#include <vector>

#include "platform/linux/sound/sound_card.h"

namespace sonarith::sound {

namespace {

using Clock = std::chrono::steady_clock;

/// Written before the device is started: 100 ms, so that no beginning is clipped, and so that the
/// card may be late by nearly as much before the device runs dry.
constexpr std::size_t prefillFrames = frameRate / 10;
/// Written after the last sound, 50 ms: what a device repeats when it runs dry is then silence.
constexpr std::size_t paddingFrames = frameRate / 20;
/// Taken by the device, half a second: more than it keeps, so some of it was heard.
constexpr std::size_t certainFrames = frameRate / 2;
/// How long one wait for room lasts, and with it how soon the pump sees that it is to leave.
constexpr std::chrono::milliseconds roomWait{100};
/// Written at once, 30 ms: a sound server is a process of its own, and every write wakes it. Less
/// than the device holds in advance by far.
constexpr std::size_t batchFrames = 3 * blockFrames;
/// Between two looks at how much of the end is still to be heard, and after a device said that it
/// had room and then had none.
constexpr std::chrono::milliseconds shortRest{10};
/// Underruns in a row without one frame played in between, until the device counts as lost.
constexpr int maxFruitlessRecoveries = 3;

} // namespace

PlaybackSession::Ending PlaybackSession::run() {
    std::vector<StereoFrame> batch(batchFrames);
    while (!feed_.isLeaving()) {
        const auto rest = phase_ == Phase::draining ? shortRest : timing_.dryAfter;
        const std::size_t count = feed_.take(batch, rest, timing_.batchWait);
        const bool alive = count > 0 ? playBlock(std::span(batch).first(count)) : goOnDry();
        if (!alive) {
            return feed_.isLeaving() ? Ending::leaving : Ending::lost;
        }
        if (quietForTooLong()) {
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

/// Nothing came for a while: lets the end be heard, then stops the device, so that it does not
/// underrun for ever.
bool PlaybackSession::goOnDry() {
    switch (phase_) {
    case Phase::filling: // a sound shorter than the prefill
    case Phase::running:
        if (!writeAll(std::vector<StereoFrame>(paddingFrames)) || !startIfFilling()) {
            return false;
        }
        phase_ = Phase::draining;
        drainingSince_ = Clock::now();
        return true;
    case Phase::draining:
        // An error here (an underrun most likely) means just as well that all has been heard.
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

bool PlaybackSession::quietForTooLong() const {
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

/// Writes all of `frames`. False: the device is lost, or it is time to leave.
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
            // A device may hold less than the prefill: full means filled, then.
            if (!startIfFilling() || !awaitRoom(stalledSince)) {
                return false;
            }
        } else if (result == -EPIPE || result == -ESTRPIPE) {
            // The rejected frames are sent again by the next turn.
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
        // Some devices answer that there is room and then take nothing: do not spin on them.
        feed_.restUntil(Clock::now() + shortRest);
    } else if (room <= 0) {
        hadRoom_ = false;
    }
    // Underruns show again, and are dealt with, at the next write.
    return room >= 0 || room == -EPIPE || room == -ESTRPIPE || room == -EINTR;
}

} // namespace sonarith::sound
