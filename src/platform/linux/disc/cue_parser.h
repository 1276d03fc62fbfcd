// SPDX-License-Identifier: GPL-3.0-or-later
// Parses the text of a CUE sheet into a layout. The parser is strict: it refuses unknown content
// with an error that names sheet, line and cause. It opens no file.
#pragma once

#include <string_view>

#include "platform/linux/disc/image_layout.h"
#include "platform/result.h"

namespace sonarith::disc {

/// `sheet` is the sheet's name in error messages. Keywords are case-insensitive. Supported are FILE
/// (BINARY, MOTOROLA, WAVE), TRACK, INDEX, PREGAP, POSTGAP and "REM SESSION n"; other REM lines are
/// skipped, and so are lines that only describe the disc or a track (isCueDescription()). A track's
/// part from INDEX 00 to INDEX 01 is stored in the file; PREGAP and POSTGAP add silence that no
/// file contains. A track may be spread over several FILEs, and several FILE lines may name the
/// same file.
[[nodiscard]] Result<ImageLayout> parseCue(std::string_view sheet, std::string_view text);

} // namespace sonarith::disc
