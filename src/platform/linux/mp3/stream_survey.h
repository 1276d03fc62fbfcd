// SPDX-License-Identifier: GPL-3.0-or-later
// Determines the format in which a stream is decoded, by one pass over its frames. It decodes
// nothing; the pass takes a hundredth of the time of a decoding.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>

#include "platform/linux/mp3/byte_source.h"
#include "platform/linux/mp3/mp3_header.h"

namespace sonarith::mp3 {

/// A stream is decoded in its most frequent format (version, layer, rate and channels). An
/// information frame does not count if it is the first frame of its format, since it contains no
/// sound. If several formats are equally frequent, the format that begins first is chosen. The
/// decoders drop the frames of other formats and count them in ScanLoss::framesDropped. If the
/// first frame of the chosen format is an information frame, the decoders apply the trimming that
/// this frame states (info_tag.h).
///
/// A stream that begins in free format is read in free format to its end: the decoder library finds
/// the frames (free_format_decoder.h), and only frames of the first frame's format are kept.
struct StreamSurvey {
    std::optional<StreamFormat> format; ///< empty in free format, or if no frame exists
    std::optional<std::int64_t>
        freeFormatOffset; ///< where the stream begins, if it is in free format
    std::optional<Error>
        failure; ///< why the pass ended early; the other members cover the part before the failure
};

/// Surveys frames until all bytes before the offset `end` of the source have been examined.
[[nodiscard]] StreamSurvey
surveyStream(const ByteSource& source, std::int64_t end = std::numeric_limits<std::int64_t>::max());

} // namespace sonarith::mp3
