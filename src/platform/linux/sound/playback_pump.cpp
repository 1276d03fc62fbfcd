// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/playback_pump.h"

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "platform/linux/sound/frame_queue.h"

namespace sonarith::sound {

namespace {

using Clock = std::chrono::steady_clock;

/// What waits for the device at the most: 250 ms, so that a slow device cannot lag far behind.
constexpr std::size_t queueFrames = frameRate / 4;
/// Written before the device is started: 100 ms, so that no beginning is clipped, and so that the
/// card may be late by nearly as much before the device runs dry.
constexpr std::size_t prefillFrames = frameRate / 10;
/// Written after the last sound, 50 ms: what a device repeats when it runs dry is then silence.
constexpr std::size_t paddingFrames = frameRate / 20;
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

bool isSilent(std::span<const StereoFrame> frames) {
    return std::all_of(frames.begin(), frames.end(),
                       [](const StereoFrame& frame) { return frame == StereoFrame{}; });
}

} // namespace

/// What the card's side and the pump's thread share.
struct PlaybackPump::Shared {
    std::mutex mutex;
    std::condition_variable changed;
    FrameQueue queue{queueFrames};
    bool deviceOpen = false;
    bool leaving = false;

    bool isLeaving() {
        const std::lock_guard lock(mutex);
        return leaving;
    }
    /// Waits, for as long as it takes, until there is something to hear or it is time to leave.
    /// The silence before it is dropped: it may be left over from a device that was just closed.
    void awaitSound() {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] {
            queue.dropSilence();
            return leaving || !queue.empty();
        });
    }
    /// Waits `forAny` for frames, and once there are some `forAll` until `out` is full.
    std::size_t take(std::span<StereoFrame> out, std::chrono::milliseconds forAny,
                     std::chrono::milliseconds forAll) {
        std::unique_lock lock(mutex);
        if (changed.wait_for(lock, forAny, [this] { return leaving || !queue.empty(); })) {
            changed.wait_for(lock, forAll, [&] { return leaving || queue.size() >= out.size(); });
        }
        return queue.pop(out);
    }
    void restUntil(Clock::time_point time) {
        std::unique_lock lock(mutex);
        changed.wait_until(lock, time, [this] { return leaving; });
    }
    void setDeviceOpen(bool open) {
        const std::lock_guard lock(mutex);
        deviceOpen = open;
    }
    void forgetQueued() {
        const std::lock_guard lock(mutex);
        queue.drop(queueFrames);
    }
};

namespace {

/// How the time with one open device ended.
enum class Ending { quiet, lost, leaving };

/// Plays on one open device, from its first frames until it is closed.
template <typename Shared>
class Session {
  public:
    Session(PcmPlayback& device, Shared& shared, const PlaybackTiming& timing)
        : device_(device), shared_(shared), timing_(timing) {}

    Ending run() {
        std::vector<StereoFrame> batch(batchFrames);
        while (!shared_.isLeaving()) {
            const auto rest = phase_ == Phase::draining ? shortRest : timing_.dryAfter;
            const std::size_t count = shared_.take(batch, rest, timing_.batchWait);
            const bool alive = count > 0 ? playBlock(std::span(batch).first(count)) : goOnDry();
            if (!alive) {
                return shared_.isLeaving() ? Ending::leaving : Ending::lost;
            }
            if (quietForTooLong()) {
                device_.stop();
                return Ending::quiet;
            }
        }
        return Ending::leaving;
    }

  private:
    enum class Phase {
        filling,  ///< prepared, not started yet
        running,  ///< started
        draining, ///< started; nothing more has come, and the end is being heard
        stopped,  ///< open and silent
    };

    bool playBlock(std::span<const StereoFrame> frames) {
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
    bool goOnDry() {
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

    [[nodiscard]] bool quietForTooLong() const {
        const auto silentFor =
            std::chrono::milliseconds{static_cast<std::int64_t>(silentFrames_) * 1000 / frameRate};
        return silentFor >= timing_.closeAfter ||
               (phase_ == Phase::stopped && Clock::now() - stoppedAt_ >= timing_.closeAfter);
    }

    bool prepareAgain() {
        phase_ = Phase::filling;
        written_ = 0;
        return device_.prepare() >= 0;
    }

    bool startIfFilling() {
        if (phase_ != Phase::filling) {
            return true;
        }
        phase_ = Phase::running;
        return device_.start() >= 0;
    }

    /// Writes all of `frames`. False: the device is lost, or it is time to leave.
    bool writeAll(std::span<const StereoFrame> frames) {
        int recoveries = 0;
        auto stalledSince = Clock::now();
        while (!frames.empty()) {
            const long result = device_.write(frames);
            if (result > 0) {
                frames = frames.subspan(std::min(static_cast<std::size_t>(result), frames.size()));
                written_ += static_cast<std::size_t>(result);
                recoveries = 0;
                stalledSince = Clock::now();
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

    bool awaitRoom(Clock::time_point stalledSince) {
        const int room = device_.waitForRoom(roomWait);
        if (shared_.isLeaving() || Clock::now() - stalledSince > timing_.stallLimit) {
            return false;
        }
        if (room > 0 && std::exchange(hadRoom_, true)) {
            // Some devices answer that there is room and then take nothing: do not spin on them.
            shared_.restUntil(Clock::now() + shortRest);
        } else if (room <= 0) {
            hadRoom_ = false;
        }
        // Underruns show again, and are dealt with, at the next write.
        return room >= 0 || room == -EPIPE || room == -ESTRPIPE || room == -EINTR;
    }

    PcmPlayback& device_;
    Shared& shared_;
    const PlaybackTiming& timing_;
    Phase phase_ = Phase::filling;
    std::size_t written_ = 0;      ///< frames since the device was prepared
    std::size_t silentFrames_ = 0; ///< at the end of what was written
    bool hadRoom_ = false;
    Clock::time_point drainingSince_{};
    Clock::time_point stoppedAt_{};
};

template <typename Shared>
void pump(Shared& shared, const OpenPlayback& open, const PlaybackTiming& timing) {
    std::optional<Clock::time_point> nextTry;
    while (true) {
        shared.awaitSound();
        if (shared.isLeaving()) {
            return;
        }
        if (nextTry && Clock::now() < *nextTry) {
            shared.restUntil(*nextTry);
            shared.forgetQueued(); // stale by now
            continue;
        }
        Ending ending = Ending::lost;
        if (const std::unique_ptr<PcmPlayback> device = open()) {
            shared.setDeviceOpen(true);
            ending = Session<Shared>(*device, shared, timing).run();
            shared.setDeviceOpen(false);
        }
        if (ending == Ending::leaving) {
            return;
        }
        if (ending == Ending::lost) {
            nextTry = Clock::now() + timing.retryAfter;
            shared.forgetQueued();
        }
    }
}

} // namespace

PlaybackPump::PlaybackPump(OpenPlayback open, PlaybackTiming timing)
    : shared_(std::make_shared<Shared>()),
      timing_(timing),
      thread_([shared = shared_, open = std::move(open), timing] { pump(*shared, open, timing); }) {
}

PlaybackPump::~PlaybackPump() {
    {
        const std::lock_guard lock(shared_->mutex);
        shared_->leaving = true;
    }
    shared_->changed.notify_all();
    thread_.leave(timing_.patience);
}

void PlaybackPump::play(std::span<const StereoFrame> frames) {
    {
        const std::lock_guard lock(shared_->mutex);
        if (!shared_->deviceOpen && shared_->queue.empty() && isSilent(frames)) {
            return; // no device is opened for silence
        }
        shared_->queue.push(frames); // what does not fit is dropped
    }
    shared_->changed.notify_all();
}

} // namespace sonarith::sound
