// SPDX-License-Identifier: GPL-3.0-or-later
// The frames between the card, which hands them over and goes on, and the thread that writes them
// to the disk and waits here for more. It writes nothing itself.
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

/// Any thread may call any member; all but `take` return at once.
class RecordingQueue : public RecordingSink {
  public:
    /// What waits for the disk at the most: 10 s, 1.7 MiB. As long as a disk takes that has to spin
    /// up, or a network that reconnects; none of it was measured. Where the disk takes longer, the
    /// queue is full and holds the card: the disc waits, and when the disk goes on not one frame is
    /// missing and none was put in. A user who has to hand back the disc loses time and no sound,
    /// and a recording that was ended at this bound would be lost for a stall that is over by now.
    static constexpr std::size_t capacityFrames = std::size_t{10} * frameRate;
    /// The disk gets a quarter of a second at once. Less would wake its thread more often.
    static constexpr std::size_t batchFrames = frameRate / 4;
    /// So many that wait are a stall which the user is told of: an idle disk has answered by then.
    static constexpr std::size_t stallFrames = std::size_t{3} * frameRate;

    enum class Flow { stalled, flowing };
    /// `onFlow` is called at the beginning of a stall, on the card's thread, and at its end, on
    /// that of `take`. It must return at once and not call this object.
    explicit RecordingQueue(std::function<void(Flow)> onFlow) : onFlow_(std::move(onFlow)) {}

    // The card's side.

    void record(std::span<const StereoFrame> frames) override;
    [[nodiscard]] std::size_t room() const override;

    /// The frames that `record` got; those that are kept, once it was given up.
    [[nodiscard]] std::int64_t frames() const;
    /// Nothing more is taken from the card.
    void end();
    /// What waits is not wanted any more, and nothing more is; `kept` frames are on the disk.
    void giveUp(std::int64_t kept);

    // The writer's side.

    /// Waits for a batch, or for the end; returns how many frames at the head of `out` were
    /// written. 0: there are no more.
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
