// SPDX-License-Identifier: GPL-3.0-or-later
// The frames between the card, which hands them over and goes on, and the thread that writes them
// to a device and waits here for more. Both sides call it at any time.
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

    /// What does not fit is dropped, and so is silence while nothing is heard anyway.
    void add(std::span<const StereoFrame> frames);
    /// The thread is to end; nothing makes it wait any more.
    void leave();

    // The thread's side.

    [[nodiscard]] bool isLeaving() const;
    /// Waits, for as long as it takes, until there is something to hear or it is time to leave.
    /// The silence before it is dropped: it may be left over from a device that was just closed.
    void awaitSound();
    /// Waits `forAny` for frames, and once there are some `forAll` until `out` is full. Answers how
    /// many frames at the head of `out` were written.
    [[nodiscard]] std::size_t take(std::span<StereoFrame> out, std::chrono::milliseconds forAny,
                                   std::chrono::milliseconds forAll);
    void restUntil(std::chrono::steady_clock::time_point time);
    /// While a device is open, it is to hear the silence between sounds, too.
    void setDeviceOpen(bool open);
    void forgetQueued();

  private:
    /// What waits for the device at the most: 250 ms, so that a slow device cannot lag far behind.
    static constexpr std::size_t queueFrames = frameRate / 4;

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    FrameQueue queue_{queueFrames};
    bool deviceOpen_ = false;
    bool leaving_ = false;
};

/// Whether there is nothing to hear in these frames.
[[nodiscard]] bool isSilent(std::span<const StereoFrame> frames);

} // namespace sonarith::sound
