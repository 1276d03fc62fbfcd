// SPDX-License-Identifier: GPL-3.0-or-later
// Parses the text of a CUE sheet into a layout. Strict: unknown content is refused with file, line
// and cause. It opens no file.
#pragma once

#include <string_view>

#include "platform/linux/disc/image_layout.h"
#include "platform/result.h"

namespace sonarith::disc {

/// `sheet` is the sheet's name in error messages. Keywords are case-insensitive. Supported are FILE
/// (BINARY, MOTOROLA, WAVE), TRACK, INDEX, PREGAP, POSTGAP and "REM SESSION n"; comments and
/// descriptions are skipped. The part that starts at INDEX 00 is stored in the file; PREGAP and
/// POSTGAP are silence that is not stored. A track may be spread over several FILEs, and one file
/// may be named repeatedly.
[[nodiscard]] Result<ImageLayout> parseCue(std::string_view sheet, std::string_view text);

} // namespace sonarith::disc
