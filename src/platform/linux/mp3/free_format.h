// SPDX-License-Identifier: GPL-3.0-or-later
// Detects streams in free format: their headers do not contain the bit rate, and the frame size is
// the distance from one header to the next. free_format_decoder.h decodes these streams.
#pragma once

#include "platform/linux/mp3/mp3_header.h"

namespace sonarith::mp3 {

/// Whether a row of free-format frames begins at the beginning of `bytes`, which should contain
/// three frames. The row may begin with an information frame, which encoders write with a bit rate.
[[nodiscard]] bool isFreeFormat(Bytes bytes);

} // namespace sonarith::mp3
