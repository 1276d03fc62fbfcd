// SPDX-License-Identifier: GPL-3.0-or-later
// The result of a decoding, in more detail than the product shows.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/linux/mp3/decode_failure.h"
#include "platform/linux/mp3/pcm_reader.h"

namespace sonarith::mp3 {

enum class DecodeOutcome {
    none,      ///< no decoding has ended yet
    completed, ///< the WAV is complete
    stopped,   ///< the WAV has everything up to the stop; not saved if there is no sample
    noFrames,  ///< no frame was found, and nothing was written
    failed,    ///< the WAV has everything up to the failure; not saved if there is no sample
};

enum class DecodeMethod {
    none,
    sequential,
    segments,
    mixed, ///< segments at first, then one pass from a frame that the library gives up, or after a
           ///< full disk
};

struct DecodeResult {
    DecodeOutcome outcome = DecodeOutcome::none;
    DecodeMethod method = DecodeMethod::none;
    PcmFormat format;
    std::int64_t samples = 0; ///< per channel, in the saved WAV; 0: none was saved
    DecodeCount count;
    std::optional<DecodeFailure> failure; ///< only after a failure
};

} // namespace sonarith::mp3
