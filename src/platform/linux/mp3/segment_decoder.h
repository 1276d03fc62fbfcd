// SPDX-License-Identifier: GPL-3.0-or-later
// Decodes one segment with a decoder of its own. The samples are exactly those that one pass over
// the whole stream delivers for this segment, unless an earlier segment of the stream is broken
// (see SegmentEnd). The caller assigns segments to threads and stores the samples.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>

#include "platform/linux/mp3/byte_source.h"
#include "platform/linux/mp3/decode_failure.h"
#include "platform/linux/mp3/info_tag.h"
#include "platform/linux/mp3/mp3_index.h"
#include "platform/result.h"

namespace sonarith::mp3 {

enum class SegmentEnd {
    complete,
    stopped, ///< the receiver of the samples has requested a stop before the last samples
    /// The decoder library stopped decoding a frame half-way (broken_frame_check.h), or the check
    /// for such frames could not run. A single decoder must decode this segment and all later ones.
    broken,
    failed,
};

struct SegmentOutcome {
    SegmentEnd end = SegmentEnd::complete;
    std::optional<DecodeFailure> failure = std::nullopt; ///< only for SegmentEnd::failed
};

/// Receives the samples of consecutive whole frames, except the samples that GaplessTrim removes.
/// `frame` is the number of the frame after the last of these frames. `first` is the position in
/// the decoded sound at which the samples begin, counted per channel. Returns true to continue,
/// false to stop, or an error if the samples cannot be written.
using TakeSamples = std::function<Result<bool>(std::int64_t frame, std::int64_t first,
                                               std::span<const std::int16_t> samples)>;

enum class Until {
    segmentEnd,
    streamEnd, ///< continues from the segment to the end of the stream, through broken frames too
};

/// Passes the segment's samples to `take`, in order, several frames at a time. If the source cannot
/// be read at some offset, `take` has received the samples of all frames before this offset.
[[nodiscard]] SegmentOutcome decodeSegment(const ByteSource& source, const StreamFormat& format,
                                           const GaplessTrim& trim, const Segment& segment,
                                           const TakeSamples& take,
                                           Until until = Until::segmentEnd);

} // namespace sonarith::mp3
