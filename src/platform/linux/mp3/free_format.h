// SPDX-License-Identifier: GPL-3.0-or-later
// Tells streams in free format: their headers leave the bit rate open, and the frame size is the
// distance from one header to the next. It only recognizes them; the library reads them.
#pragma once

#include "platform/linux/mp3/mp3_header.h"

namespace sonarith::mp3 {

/// Whether a row of free-format frames begins at the head of `bytes`, which are better many (three
/// frames). An information frame may stand before it, as encoders give that a bit rate.
[[nodiscard]] bool isFreeFormat(Bytes bytes);

} // namespace sonarith::mp3
