// SPDX-License-Identifier: GPL-3.0-or-later
// Decodes one segment with a decoder of its own, to exactly the samples that the sequential pass
// has there. Which thread decodes which segment, and where the samples go, is decided elsewhere.
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
    stopped, ///< the taker wants no more
    broken,  ///< there is a frame in it that the library gives up: all from it on needs one pass
    failed,
};

struct SegmentOutcome {
    SegmentEnd end = SegmentEnd::complete;
    std::optional<DecodeFailure> failure = std::nullopt; ///< only if it failed
};

/// Takes samples per frame: `frame` is the number after the last one that they hold, `first` their
/// place in the result, per channel. True: go on. A failure is one of writing them.
using TakeSamples = std::function<Result<bool>(std::int64_t frame, std::int64_t first,
                                               std::span<const std::int16_t> samples)>;

enum class Until {
    segmentEnd,
    streamEnd, ///< goes on from the segment to the end of the stream, through broken frames too
};

/// Gives the segment's samples to `take`, in order, several frames at a time. Where the source
/// fails, `take` has had all frames before that place.
[[nodiscard]] SegmentOutcome decodeSegment(const ByteSource& source, const StreamFormat& format,
                                           const GaplessTrim& trim, const Segment& segment,
                                           const TakeSamples& take,
                                           Until until = Until::segmentEnd);

} // namespace sonarith::mp3
