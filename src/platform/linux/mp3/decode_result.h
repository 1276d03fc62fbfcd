// SPDX-License-Identifier: GPL-3.0-or-later
// What became of a decoding: more than the product shows anywhere.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/linux/mp3/decode_failure.h"
#include "platform/linux/mp3/pcm_reader.h"

namespace sonarith::mp3 {

enum class DecodeOutcome {
    none,      ///< no decoding has ended yet
    completed, ///< the WAV has all there is
    stopped,   ///< the WAV has all up to the stop; there is none if that was nothing
    noFrames,  ///< nothing to decode was found, and nothing was written
    failed,    ///< the WAV has all up to the failure; there is none if that was nothing
};

enum class DecodeMethod {
    none,
    sequential,
    segments,
    mixed, ///< segments up to a frame that the library gives up, or a full disk, and one pass from
           ///< there on
};

struct DecodeResult {
    DecodeOutcome outcome = DecodeOutcome::none;
    DecodeMethod method = DecodeMethod::none;
    PcmFormat format;
    std::int64_t samples = 0; ///< per channel, in the WAV that was named; 0: none was
    DecodeCount count;
    std::optional<DecodeFailure> failure; ///< only if it failed
};

} // namespace sonarith::mp3
