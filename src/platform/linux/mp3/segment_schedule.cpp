// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/segment_schedule.h"

#include <algorithm>

namespace sonarith::mp3 {

std::optional<Segment> SegmentSchedule::take(std::size_t worker) {
    const std::lock_guard lock(mutex_);
    if (end_) {
        return std::nullopt;
    }
    const std::optional<Segment> segment = index_.next();
    if (segment) {
        works_[worker] = {*segment, segment->firstFrame};
    } else {
        scanned_ = true;
    }
    return segment;
}

void SegmentSchedule::fail(std::size_t worker, const DecodeFailure& failure) {
    endAt(worker, failure);
}

void SegmentSchedule::needOnePass(std::size_t worker) {
    endAt(worker, std::nullopt);
}

void SegmentSchedule::endAt(std::size_t worker, const std::optional<DecodeFailure>& failure) {
    const std::lock_guard lock(mutex_);
    const Segment& segment = works_[worker].segment;
    if (!end_ || segment.firstFrame < end_->segment.firstFrame) {
        end_ = End{segment, failure};
        lastWanted_ = segment.firstFrame;
    }
}

std::optional<Segment> SegmentSchedule::rest() const {
    return end_ ? std::optional(end_->segment) : std::nullopt;
}

/// Segments are taken in the order of the stream, and a worker takes a segment only when it has
/// completed its previous segment. So if a frame is undecoded, the first undecoded frame of the
/// stream is in the current segment of a worker.
std::int64_t SegmentSchedule::wholeFrames() const {
    std::int64_t frames = index_.count().framesDecoded;
    for (const Work& work : works_) {
        if (work.done < work.end()) {
            frames = std::min(frames, work.done);
        }
    }
    return frames;
}

bool SegmentSchedule::complete() const {
    return scanned_ && !end_ && !index_.failure() && wholeFrames() == index_.count().framesDecoded;
}

std::optional<DecodeFailure> SegmentSchedule::failure() const {
    if (end_) {
        return end_->failure;
    }
    return index_.failure() ? std::optional(DecodeFailure{DecodeStep::reading, *index_.failure()})
                            : std::nullopt;
}

} // namespace sonarith::mp3
