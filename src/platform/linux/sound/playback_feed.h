// SPDX-License-Identifier: GPL-3.0-or-later
// The queue of frames between the software sound card and the thread that writes the frames to a
// device. The card adds frames without blocking; the thread waits here for frames. Thread-safe.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <span>

#include "platform/linux/sound/frame_queue.h"

namespace sonarith::sound {

class PlaybackFeed {
  public:
    // The card's side.

    /// Frames that do not fit are dropped. While no device is open and the queue is empty, silence
    /// is dropped, too.
    void add(std::span<const StereoFrame> frames);
    /// Asks the thread to end; its waits return.
    void leave();

    // The thread's side.

    [[nodiscard]] bool isLeaving() const;
    /// Waits without a time limit until there is sound or the thread is asked to end. Drops the
    /// silence before the sound: that silence may have been queued before the device was closed.
    void awaitSound();
    /// Waits until `out` is full: at most `forAny` while there are no frames, and at most `forAll`
    /// once there are some. Returns the number of frames at the beginning of `out`.
    [[nodiscard]] std::size_t take(std::span<StereoFrame> out, std::chrono::milliseconds forAny,
                                   std::chrono::milliseconds forAll);
    void restUntil(std::chrono::steady_clock::time_point time);
    /// While a device is open, silence is queued too.
    void setDeviceOpen(bool open);
    void forgetQueued();

  private:
    /// The most frames in the queue: 250 ms, so that a slow device cannot lag far behind.
    static constexpr std::size_t queueFrames = frameRate / 4;

    /// Waits until `done` returns true, but at most `atMost`. During the wait, add() wakes the
    /// thread only if at least `frames` frames are queued.
    template <typename Done>
    bool waitFor(std::unique_lock<std::mutex>& lock, std::chrono::milliseconds atMost,
                 std::size_t frames, Done done) {
        wanted_ = frames;
        const bool isDone = changed_.wait_for(lock, atMost, done);
        wanted_ = 1;
        return isDone;
    }

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    FrameQueue queue_{queueFrames};
    /// The thread is not woken while fewer frames than this are queued: the card adds small blocks,
    /// and a wake-up costs more than all other work for a block.
    std::size_t wanted_ = 1;
    bool deviceOpen_ = false;
    bool leaving_ = false;
};

/// Whether all these frames are silent.
[[nodiscard]] bool isSilent(std::span<const StereoFrame> frames);

} // namespace sonarith::sound
