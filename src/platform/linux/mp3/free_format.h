// SPDX-License-Identifier: GPL-3.0-or-later
// Detects streams in free format: their frame headers do not contain the bit rate, and the frame
// size is the distance from one header to the next. free_format_decoder.h decodes these streams.
#pragma once

#include "platform/linux/mp3/mp3_header.h"

namespace sonarith::mp3 {

/// Whether `bytes` begins with at least three frames in free format; of the third one, the header
/// is enough. An information frame (info_tag.h) may precede these frames, although the header of an
/// information frame contains a bit rate.
[[nodiscard]] bool isFreeFormat(Bytes bytes);

} // namespace sonarith::mp3
