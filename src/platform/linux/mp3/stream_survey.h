// SPDX-License-Identifier: GPL-3.0-or-later
// Decides in which format a stream is decoded, by one pass over its frames. It decodes nothing; a
// pass takes a hundredth of the time that the decoding does.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>

#include "platform/linux/mp3/byte_source.h"
#include "platform/linux/mp3/mp3_header.h"

namespace sonarith::mp3 {

/// A stream is decoded in the format (version, layer, rate and channels) of most of its frames.
/// Information frames do not count, since they hold no sound; of formats with as many frames, the
/// one whose first frame comes first is taken. Frames of other formats are dropped and counted. The
/// trimming is what the information frame says that heads the frames of the format taken.
///
/// A stream that begins in free format is read as such to its end: the library finds its frames,
/// and keeps the format of the first.
struct StreamSurvey {
    std::optional<StreamFormat> format; ///< empty in free format, and where there is no frame
    std::optional<std::int64_t> freeFormatOffset; ///< where the stream begins, if it is one
    std::optional<Error> failure; ///< the pass came no further; the rest is of what came before
};

/// Passes over the frames that begin before `end` of the source.
[[nodiscard]] StreamSurvey
surveyStream(const ByteSource& source, std::int64_t end = std::numeric_limits<std::int64_t>::max());

} // namespace sonarith::mp3
