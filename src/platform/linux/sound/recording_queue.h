// SPDX-License-Identifier: GPL-3.0-or-later
// The queue of frames between the software sound card and the thread that writes the frames to the
// disk. The card adds frames without blocking; the thread waits here for frames. The queue writes
// nothing itself.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <span>

#include "platform/linux/sound/frame_queue.h"
#include "platform/linux/sound/sound_card.h"

namespace sonarith::sound {

/// Thread-safe; all members except `take` return at once.
class RecordingQueue : public RecordingSink {
  public:
    /// The largest number of frames that wait for the disk: 10 s, 1.7 MiB. That should be enough
    /// for a disk that spins up or a network that reconnects; the value was not measured. If the
    /// disk takes longer, the queue is full and stops the card: the compact disc pauses, and when
    /// the disk responds again, no frame is missing and none was inserted. So a stall costs the
    /// user time but no sound. Ending the recording at this limit would lose sound because of a
    /// stall that may be over soon.
    static constexpr std::size_t capacityFrames = std::size_t{10} * frameRate;
    /// Frames are written to the disk in batches of a quarter of a second. Smaller batches would
    /// wake the writing thread more often.
    static constexpr std::size_t batchFrames = frameRate / 4;
    /// From this number of waiting frames on, a stall is reported to the user. A disk that only had
    /// to spin up has usually responded by then.
    static constexpr std::size_t stallFrames = std::size_t{3} * frameRate;

    enum class Flow { stalled, flowing };
    /// record() calls `onFlow` when a stall begins. take() calls `onFlow` when the stall ends.
    /// `onFlow` must return at once and must not call this object.
    explicit RecordingQueue(std::function<void(Flow)> onFlow) : onFlow_(std::move(onFlow)) {}

    // The card's side.

    void record(std::span<const StereoFrame> frames) override;
    [[nodiscard]] std::size_t room() const override;

    // For any thread of the recording.

    /// The number of frames that record() has queued so far; after giveUp(), the number of kept
    /// frames.
    [[nodiscard]] std::int64_t frames() const;
    /// Accepts no more frames from the card.
    void end();
    /// Drops the waiting frames and accepts no more. `kept` is the number of frames on the disk.
    void giveUp(std::int64_t kept);

    // The writer's side.

    /// Waits until a batch is queued or the recording has ended, and moves frames to the beginning
    /// of `out`. Returns their number; 0 if no more follow.
    [[nodiscard]] std::size_t take(std::span<StereoFrame> out);

  private:
    std::function<void(Flow)> onFlow_; ///< called under mutex_, so that its calls are in order
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    FrameQueue queue_{capacityFrames};
    std::int64_t frames_ = 0;
    bool stalled_ = false;
    bool ended_ = false;
};

} // namespace sonarith::sound
