// SPDX-License-Identifier: GPL-3.0-or-later
// Divides a stream into segments. Each segment can be decoded independently of the others. Each
// call of next() scans the frames of one segment. The index keeps no list of frames, so its memory
// does not depend on the length of the stream.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>

#include "platform/linux/mp3/bit_reservoir.h"
#include "platform/linux/mp3/frame_sequence.h"
#include "platform/linux/mp3/pcm_reader.h"
#include "platform/linux/mp3/preroll_history.h"

namespace sonarith::mp3 {

struct Segment {
    std::int64_t firstFrame = 0;
    std::int64_t frames = 0;      ///< at least 1
    Preroll preroll;              ///< where decoding begins; at firstFrame or before
    std::int64_t sourceBytes = 0; ///< how many bytes of the source the segment covers
};

/// For one thread at a time.
class SegmentIndex {
  public:
    /// `frames` must not have returned a frame yet. All segments except the last have
    /// `framesPerSegment` frames.
    SegmentIndex(FrameSequence frames, std::int64_t framesPerSegment)
        : frames_(std::move(frames)), framesPerSegment_(framesPerSegment) {}

    /// The next segment; empty at the end. If the source cannot be read at some offset, the
    /// segments still cover all frames before that offset.
    [[nodiscard]] std::optional<Segment> next();
    /// The counts of frames and losses in the segments returned so far.
    [[nodiscard]] const DecodeCount& count() const { return count_; }
    /// After the last segment: the error that ended the stream before the end of the source; empty
    /// if there was none.
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
