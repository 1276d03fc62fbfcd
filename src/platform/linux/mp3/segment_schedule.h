// SPDX-License-Identifier: GPL-3.0-or-later
// Assigns segments to workers, tracks the progress of each worker, and computes how much of the
// stream is complete in the end. It decodes nothing and starts no thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <limits>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "platform/linux/mp3/decode_failure.h"
#include "platform/linux/mp3/mp3_index.h"

namespace sonarith::mp3 {

/// Segments are assigned in the order of the stream. If a frame of a segment is broken
/// (broken_frame_check.h), that segment and all later ones cannot be decoded in parallel: one
/// decoder must decode them in one pass to the end of the stream. The segment with the broken frame
/// "needs one pass". When a segment fails or needs one pass, the workers decode the segments before
/// it to their end and abandon the segments after it. So the workers' result contains every frame
/// before the first segment that failed or needs one pass.
///
/// The members with a `worker` argument are called on the thread of that worker; the other members
/// are called while no worker runs.
class SegmentSchedule {
  public:
    /// `frames` must not have returned a frame yet. The workers are numbered from 0.
    SegmentSchedule(FrameSequence frames, std::int64_t framesPerSegment, std::size_t workers)
        : index_(std::move(frames), framesPerSegment), works_(workers) {}

    /// Assigns the worker's next segment; empty if there is no more work for this worker.
    [[nodiscard]] std::optional<Segment> take(std::size_t worker);
    /// Must be called when the result contains all frames of the worker's segment whose numbers are
    /// below `frame`.
    void advance(std::size_t worker, std::int64_t frame) { works_[worker].done = frame; }
    [[nodiscard]] std::int64_t done(std::size_t worker) const { return works_[worker].done; }
    /// False as soon as a segment before the worker's segment is known to have failed or to need
    /// one pass.
    [[nodiscard]] bool wanted(std::size_t worker) const {
        return works_[worker].segment.firstFrame <= lastWanted_;
    }
    /// Must be called when the worker's segment cannot be decoded further.
    void fail(std::size_t worker, const DecodeFailure& failure);
    /// Must be called when a frame in the worker's segment is broken, so that one decoder must
    /// decode this segment and all later ones.
    void needOnePass(std::size_t worker);

    /// The first segment that needs one pass or failed; empty if there is none. Everything before
    /// that segment is in the result, unless the workers were stopped.
    [[nodiscard]] std::optional<Segment> rest() const;
    /// Scans the stream for one more segment, only to count its frames; the segment is not
    /// assigned.
    [[nodiscard]] std::optional<Segment> skim() { return index_.next(); }
    /// How many frames from the beginning of the stream are in the result without a gap.
    [[nodiscard]] std::int64_t wholeFrames() const;
    /// Whether every frame of the stream is in the result: the scan reached the end of the source,
    /// and every segment was decoded to its end.
    [[nodiscard]] bool complete() const;
    /// The failure that ended the decoding early; empty if there was none or if the rest needs one
    /// pass. A read that fails because of a stop is also a failure here.
    [[nodiscard]] std::optional<DecodeFailure> failure() const;
    [[nodiscard]] const DecodeCount& count() const { return index_.count(); }

  private:
    /// The segment that was last assigned to a worker. Before the first assignment, `segment` has
    /// no frames.
    struct Work {
        Segment segment;
        std::int64_t done = 0;
        [[nodiscard]] std::int64_t end() const { return segment.firstFrame + segment.frames; }
    };
    /// The first segment, in the order of the stream, that was not completed.
    struct End {
        Segment segment;
        std::optional<DecodeFailure> failure; ///< empty if the segment needs one pass
    };
    void endAt(std::size_t worker, const std::optional<DecodeFailure>& failure);

    SegmentIndex index_;
    std::vector<Work> works_; ///< while workers run, each uses only its own
    std::atomic<std::int64_t> lastWanted_ = std::numeric_limits<std::int64_t>::max();
    std::mutex mutex_; ///< protects the index and the members below
    std::optional<End> end_;
    bool scanned_ = false; ///< whether the scan has no more segments
};

} // namespace sonarith::mp3
