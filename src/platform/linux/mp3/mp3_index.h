// SPDX-License-Identifier: GPL-3.0-or-later
// Divides a stream into segments that can be decoded apart, while it is being scanned. It keeps no
// list of frames: its memory is the same for a song and for a day.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/linux/mp3/bit_reservoir.h"
#include "platform/linux/mp3/frame_sequence.h"
#include "platform/linux/mp3/pcm_reader.h"
#include "platform/linux/mp3/preroll_history.h"

namespace sonarith::mp3 {

struct Segment {
    std::int64_t firstFrame = 0;
    std::int64_t frames = 0;      ///< at least 1
    Preroll preroll;              ///< where decoding begins; before firstFrame, or the same
    std::int64_t sourceBytes = 0; ///< of the source that it stands for
};

/// For one thread at a time.
class SegmentIndex {
  public:
    /// Goes on from the beginning of `frames`. All segments but the last have `framesPerSegment`
    /// frames.
    SegmentIndex(FrameSequence frames, std::int64_t framesPerSegment)
        : frames_(std::move(frames)), framesPerSegment_(framesPerSegment) {}

    /// The next segment; empty at the end. All frames before a place that cannot be read are given.
    [[nodiscard]] std::optional<Segment> next();
    /// What the segments that were given so far hold.
    [[nodiscard]] const DecodeCount& count() const { return count_; }
    /// Once there is no next segment: why the stream ended before the end of the source, if it did.
    [[nodiscard]] const std::optional<Error>& failure() const {
        return frames_.scanner().failure();
    }

  private:
    FrameSequence frames_;
    std::int64_t framesPerSegment_;
    PrerollHistory history_;
    BitReservoir reservoir_;
    DecodeCount count_;
};

} // namespace sonarith::mp3
