// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/segment_decoder.h"

#include <limits>
#include <utility>
#include <vector>

#include "platform/linux/mp3/broken_frame_check.h"
#include "platform/linux/mp3/sequential_decoder.h"

namespace sonarith::mp3 {

namespace {

/// Frames that are handed over together: enough that the system calls do not count, few enough
/// that a stop loses nothing worth having, on however many cores.
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

    Result<SegmentEnd> run(FrameDecoder<std::int16_t> decoder) {
        const std::int64_t first = batchFrame_;
        while (frames_.number() < end_) {
            const std::optional<NumberedFrame> frame = frames_.next();
            if (!frame) {
                return endOfStream();
            }
            const Bytes bytes = frames_.bytesOf(*frame);
            const std::span<const std::int16_t> samples = decoder.decode(*frame, bytes);
            const bool mine = frame->number >= first; // others are checked by others
            if (mine && until_ == Until::segmentEnd && !decoder.silencedLast() &&
                check_.isBroken(*frame, bytes, samples)) {
                return SegmentEnd::broken;
            }
            check_.pass(*frame, bytes);
            if (!mine) {
                continue;
            }
            const auto kept = keptPart(trim_, format_, frame->number, samples);
            batch_.insert(batch_.end(), kept.begin(), kept.end());
            const std::int64_t done = frame->number + 1;
            if (done - batchFrame_ == framesPerBatch || done == end_) {
                const Result<bool> goOn = handOver(done);
                if (!goOn.ok()) {
                    return goOn.error();
                }
                if (!goOn.value() && done < end_) {
                    return SegmentEnd::stopped;
                }
            }
        }
        return SegmentEnd::complete;
    }

  private:
    Result<SegmentEnd> endOfStream() {
        if (frames_.scanner().failure() || until_ == Until::segmentEnd) {
            return frames_.scanner().failure().value_or(changedSource());
        }
        const Result<bool> handed = handOver(frames_.number());
        return handed.ok() ? Result(SegmentEnd::complete) : handed.error();
    }

    /// What was decoded of the frames before `done`, and was not handed over yet.
    Result<bool> handOver(std::int64_t done) {
        Result<bool> goOn =
            take_(done, trim_.keptBefore(batchFrame_ * format_.samplesPerFrame()), batch_);
        batch_.clear();
        batchFrame_ = done;
        return goOn;
    }

    StreamFormat format_;
    GaplessTrim trim_;
    const TakeSamples& take_;
    Until until_;
    std::int64_t end_;        ///< the frame after the last one
    std::int64_t batchFrame_; ///< the first one in the batch
    FrameSequence frames_;
    BrokenFrameCheck check_;
    std::vector<std::int16_t> batch_;
};

} // namespace

Result<SegmentEnd> decodeSegment(const ByteSource& source, const StreamFormat& format,
                                 const GaplessTrim& trim, const Segment& segment,
                                 const TakeSamples& take, Until until) {
    Result<FrameDecoder<std::int16_t>> decoder = FrameDecoder<std::int16_t>::create();
    if (!decoder.ok()) {
        return decoder.error();
    }
    return SegmentRun(source, format, trim, segment, take, until).run(std::move(decoder.value()));
}

} // namespace sonarith::mp3
