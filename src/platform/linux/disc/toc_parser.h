// SPDX-License-Identifier: GPL-3.0-or-later
// Parses the text of a cdrdao TOC into a layout. Strict: unknown content is refused with file, line
// and cause. It opens no file.
#pragma once

#include <string_view>

#include "platform/linux/disc/image_layout.h"
#include "platform/result.h"

namespace sonarith::disc {

/// `sheet` is the sheet's name in error messages. Keywords are case-insensitive. Supported are
/// tracks made of FILE/AUDIOFILE, DATAFILE, SILENCE and ZERO, with START or PREGAP before their
/// INDEX 01; CD_TEXT blocks, flags and codes are skipped. Lengths are counted in samples of sound
/// or bytes of data, or given as mm:ss:ff. A raw sound file has the high byte first (as that format
/// defines), the low byte first with SWAP; a name that ends in ".wav" is a WAVE file.
[[nodiscard]] Result<ImageLayout> parseToc(std::string_view sheet, std::string_view text);

} // namespace sonarith::disc
