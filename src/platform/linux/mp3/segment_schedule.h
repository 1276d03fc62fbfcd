// SPDX-License-Identifier: GPL-3.0-or-later
// Assigns segments to workers, and tracks the progress of each and how much of the stream is
// complete in the end. It decodes nothing and starts no thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <limits>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/linux/mp3/decode_failure.h"
#include "platform/linux/mp3/mp3_index.h"

namespace sonarith::mp3 {

/// Segments are assigned in the order of the stream. A segment with a broken frame needs one pass:
/// one decoder must continue from there to the end. When a segment fails or needs one pass, the
/// segments before it are decoded to their end and those after it are dropped, so that the result
/// contains the complete stream before the first such segment.
///
/// The members with a `worker` argument are called on the thread of that worker; the other members
/// are called while no worker runs.
class SegmentSchedule {
  public:
    /// `frames` must be at its beginning. The workers are numbered from 0.
    SegmentSchedule(FrameSequence frames, std::int64_t framesPerSegment, std::size_t workers)
        : index_(std::move(frames), framesPerSegment), works_(workers) {}

    /// The worker's next segment; empty if there is no more work for it.
    [[nodiscard]] std::optional<Segment> take(std::size_t worker);
    /// All frames of the worker's segment before `frame` are in the result.
    void advance(std::size_t worker, std::int64_t frame) { works_[worker].done = frame; }
    [[nodiscard]] std::int64_t done(std::size_t worker) const { return works_[worker].done; }
    /// False once the worker's segment is known to be after a failure.
    [[nodiscard]] bool wanted(std::size_t worker) const {
        return works_[worker].segment.firstFrame <= lastWanted_;
    }
    /// The worker's segment cannot be decoded further.
    void fail(std::size_t worker, const DecodeFailure& failure);
    /// A frame in the worker's segment is broken: from that segment on one pass is needed.
    void needOnePass(std::size_t worker);

    /// The first segment that needs one pass or failed. Everything before it is in the result,
    /// unless the workers were stopped.
    [[nodiscard]] std::optional<Segment> rest() const;
    /// The next segment of the scan, for its counts only. It is not decoded.
    [[nodiscard]] std::optional<Segment> skim() { return index_.next(); }
    /// All frames before this one are in the result.
    [[nodiscard]] std::int64_t wholeFrames() const;
    /// Every frame of the stream is in the result: the scan reached the end of the source, and
    /// every segment was decoded to its end.
    [[nodiscard]] bool complete() const;
    /// The failure that ended the decoding early; empty if the rest needs one pass, or after a
    /// stop.
    [[nodiscard]] std::optional<DecodeFailure> failure() const;
    [[nodiscard]] const DecodeCount& count() const { return index_.count(); }

  private:
    /// A worker's last segment; it has no frames if there was none.
    struct Work {
        Segment segment;
        std::int64_t done = 0;
        [[nodiscard]] std::int64_t end() const { return segment.firstFrame + segment.frames; }
    };
    /// The first segment, in the order of the stream, that was not completed.
    struct End {
        Segment segment;
        std::optional<DecodeFailure> failure; ///< empty if it needs one pass
    };
    void endAt(std::size_t worker, const std::optional<DecodeFailure>& failure);

    SegmentIndex index_;
    std::vector<Work> works_; ///< each is accessed only by its worker
    std::atomic<std::int64_t> lastWanted_ = std::numeric_limits<std::int64_t>::max();
    std::mutex mutex_; ///< protects the index and the members below
    std::optional<End> end_;
    bool scanned_ = false; ///< there are no more segments
};

} // namespace sonarith::mp3
