// SPDX-License-Identifier: GPL-3.0-or-later
// Why a decoding ended before its end, and at which of its steps. Words for the user are made
// elsewhere (decode_notice.h).
#pragma once

#include "platform/result.h"

namespace sonarith::mp3 {

enum class DecodeStep {
    opening, ///< of the source
    reading, ///< from the source
    decoding,
    writing, ///< making, writing and naming the WAV
};

struct DecodeFailure {
    DecodeStep step = DecodeStep::decoding;
    Error error;
};

} // namespace sonarith::mp3
