// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the text of a CUE sheet into a layout. Strict: what it does not know it refuses, with file,
// line and cause. It opens no file.
#pragma once

#include <string_view>

#include "platform/linux/disc/image_layout.h"
#include "platform/result.h"

namespace sonarith::disc {

/// `sheet` is the name to call the sheet by in errors. Keywords may have any case. Understood are
/// FILE (BINARY, MOTOROLA, WAVE), TRACK, INDEX, PREGAP, POSTGAP and "REM SESSION n"; comments and
/// descriptions are passed over. What INDEX 00 begins is stored in the file, PREGAP and POSTGAP
/// are silence that is not. Several FILEs may hold one track's parts, and one file may be named
/// again and again.
[[nodiscard]] Result<ImageLayout> parseCue(std::string_view sheet, std::string_view text);

} // namespace sonarith::disc
