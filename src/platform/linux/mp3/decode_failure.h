// SPDX-License-Identifier: GPL-3.0-or-later
// Describes why a decoding ended early, and at which step. decode_notice.h creates the messages for
// the user.
#pragma once

#include "platform/result.h"

namespace sonarith::mp3 {

enum class DecodeStep {
    opening, ///< opening the MP3 file
    reading, ///< reading the MP3 file
    decoding,
    writing, ///< creating, writing and naming the WAV file
};

struct DecodeFailure {
    DecodeStep step = DecodeStep::decoding;
    Error error;
};

} // namespace sonarith::mp3
