// SPDX-License-Identifier: GPL-3.0-or-later
// Decodes the fields of an MP3 frame header from its binary digits. mp3_analysis.h reads the digits
// from a file.
#pragma once

#include <cstdint>
#include <string_view>

#include "formats/mp3_info.h"
#include "platform/result.h"

namespace sonarith {

/// Stores the header's fields in `info`, all or none. `digits` is the result of BytesToBits() for
/// the four header bytes. BytesToBits() omits leading zeros: with fewer than 32 digits, the fields
/// are read at wrong positions, and the last fields lose digits; a field without digits is 0.
/// `fileLength` is the length of the whole file in bytes, including tags. The duration is computed
/// from `fileLength`. If `info.IsVbr` is true, the bit rate is computed from `fileLength` and
/// `info.Frames`.
///
/// For MPEG 2, 2.5 and reserved versions, and for the reserved layer with a constant bit rate, the
/// function stores nothing and reports no error. Errors: subscriptOutOfRange (a reserved sampling
/// rate or bit rate), divisionByZero (a bit rate of 0; with a variable bit rate, also `Frames` = 0
/// or the reserved layer), overflow (a file of 256 MiB or more, an average bit rate above 32767
/// kbit/s).
[[nodiscard]] Status decodeMp3Header(std::string_view digits, std::int64_t fileLength,
                                     Mp3Info& info);

} // namespace sonarith
