// SPDX-License-Identifier: GPL-3.0-or-later
// Describes the result of a decoding, in more detail than the user sees.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/linux/mp3/decode_failure.h"
#include "platform/linux/mp3/pcm_reader.h"

namespace sonarith::mp3 {

enum class DecodeOutcome {
    none,      ///< no decoding was started, or it has not ended yet
    completed, ///< the WAV is complete
    stopped,   ///< the WAV contains the samples before the stop; without samples, no WAV is saved
    noFrames,  ///< the file contains no sound, and no WAV is saved
    failed,    ///< the WAV, if one is saved, contains the samples before the failure
};

enum class DecodeMethod {
    none,
    sequential,
    segments,
    mixed, ///< segments first, then the rest of the file in one pass, because a frame is broken
           ///< (broken_frame_check.h) or the disk was full
};

struct DecodeResult {
    DecodeOutcome outcome = DecodeOutcome::none;
    DecodeMethod method = DecodeMethod::none;
    PcmFormat format;
    std::int64_t samples = 0; ///< per channel, in the saved WAV; 0 if no WAV was saved
    DecodeCount count;
    std::optional<DecodeFailure> failure; ///< only after a failure
};

} // namespace sonarith::mp3
