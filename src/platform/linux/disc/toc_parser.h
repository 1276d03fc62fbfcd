// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the text of a cdrdao TOC into a layout. Strict: what it does not know it refuses, with
// file, line and cause. It opens no file.
#pragma once

#include <string_view>

#include "platform/linux/disc/image_layout.h"
#include "platform/result.h"

namespace sonarith::disc {

/// `sheet` is the name to call the sheet by in errors. Keywords may have any case. Understood are
/// tracks made of FILE/AUDIOFILE, DATAFILE, SILENCE and ZERO, with START or PREGAP before their
/// INDEX 01; CD_TEXT blocks, flags and codes are passed over. Lengths are counted in samples of
/// sound or bytes of data, or given as mm:ss:ff. A bare file of sound holds the high byte first (as
/// that format has it), the low byte with SWAP; a name that ends in ".wav" means a WAVE file.
[[nodiscard]] Result<ImageLayout> parseToc(std::string_view sheet, std::string_view text);

} // namespace sonarith::disc
