// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/segment_decoder.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "platform/linux/mp3/broken_frame_check.h"
#include "platform/linux/mp3/renewed_decoder.h"
#include "platform/linux/mp3/sequential_decoder.h"

namespace sonarith::mp3 {

namespace {

/// The number of MP3 frames whose samples are passed to the receiver (TakeSamples) together. Large
/// enough that the cost of system calls does not matter. Small enough that a stop takes effect
/// soon: the receiver can request a stop only when it gets samples.
constexpr std::int64_t framesPerBatch = 32;

Error changedSource() {
    return {ErrorNumber::deviceInputOutput, "the MP3 file was changed while it was read"};
}

class SegmentRun {
  public:
    SegmentRun(const ByteSource& source, const StreamFormat& format, const GaplessTrim& trim,
               const Segment& segment, const TakeSamples& take, Until until)
        : format_(format),
          trim_(trim),
          take_(take),
          until_(until),
          end_(until == Until::streamEnd ? std::numeric_limits<std::int64_t>::max()
                                         : segment.firstFrame + segment.frames),
          batchFrame_(segment.firstFrame),
          frames_(source, format, segment.preroll.frame, segment.preroll.offset) {}

    SegmentOutcome run(RenewedDecoder decoder) {
        const std::int64_t first = batchFrame_;
        while (frames_.number() < end_) {
            const std::optional<NumberedFrame> frame = frames_.next();
            if (!frame) {
                return endOfStream();
            }
            const Bytes bytes = frames_.bytesOf(*frame);
            const std::span<const std::int16_t> samples = decoder.decode(*frame, bytes);
            // The frames of the preroll belong to earlier segments and are checked there.
            const bool mine = frame->number >= first;
            if (mine && until_ == Until::segmentEnd && !decoder.silencedLast() &&
                check_.isBroken(*frame, bytes, samples)) {
                return {SegmentEnd::broken};
            }
            check_.pass(*frame, bytes);
            if (!mine) {
                continue;
            }
            const auto kept = keptPart(trim_, format_, frame->number, samples);
            batch_.insert(batch_.end(), kept.begin(), kept.end());
            const std::int64_t done = frame->number + 1;
            if (done - batchFrame_ == framesPerBatch || done == end_) {
                const SegmentOutcome handed = handOver(done);
                if (handed.end == SegmentEnd::failed ||
                    (handed.end == SegmentEnd::stopped && done < end_)) {
                    return handed;
                }
            }
        }
        return {};
    }

  private:
    SegmentOutcome endOfStream() {
        SegmentOutcome handed = handOver(std::max(frames_.number(), batchFrame_));
        if (handed.end == SegmentEnd::failed) {
            return handed;
        }
        if (frames_.scanner().failure() || until_ == Until::segmentEnd) {
            return {SegmentEnd::failed,
                    DecodeFailure{DecodeStep::reading,
                                  frames_.scanner().failure().value_or(changedSource())}};
        }
        return {};
    }

    /// Passes on the samples of the frames before `done` that have not been passed on yet.
    SegmentOutcome handOver(std::int64_t done) {
        const Result<bool> goOn =
            take_(done, trim_.keptBefore(batchFrame_ * format_.samplesPerFrame()), batch_);
        batch_.clear();
        batchFrame_ = done;
        if (!goOn.ok()) {
            return {SegmentEnd::failed, DecodeFailure{DecodeStep::writing, goOn.error()}};
        }
        return {goOn.value() ? SegmentEnd::complete : SegmentEnd::stopped};
    }

    StreamFormat format_;
    GaplessTrim trim_;
    const TakeSamples& take_;
    Until until_;
    std::int64_t end_;        ///< the frame after the last frame to decode
    std::int64_t batchFrame_; ///< the first frame in batch_
    FrameSequence frames_;
    BrokenFrameCheck check_;
    std::vector<std::int16_t> batch_;
};

} // namespace

SegmentOutcome decodeSegment(const ByteSource& source, const StreamFormat& format,
                             const GaplessTrim& trim, const Segment& segment,
                             const TakeSamples& take, Until until) {
    // A single segment is so short that its decoder need not be replaced. renewed_decoder.h
    // explains why the decoder of a long stream is replaced.
    Result<RenewedDecoder> decoder = RenewedDecoder::create(
        until == Until::streamEnd ? RenewedDecoder::usualPeriod : RenewedDecoder::never);
    if (!decoder.ok()) {
        return {SegmentEnd::failed, DecodeFailure{DecodeStep::decoding, decoder.error()}};
    }
    return SegmentRun(source, format, trim, segment, take, until).run(std::move(decoder.value()));
}

} // namespace sonarith::mp3
