// SPDX-License-Identifier: GPL-3.0-or-later
// Parses the text of a cdrdao TOC into a layout. The parser is strict: it refuses unknown content
// with an error that names sheet, line and cause. It opens no file.
#pragma once

#include <string_view>

#include "platform/linux/disc/image_layout.h"
#include "platform/result.h"

namespace sonarith::disc {

/// `sheet` is the name of the TOC in error messages. Keywords are case-insensitive. The content of
/// a track consists of the statements FILE/AUDIOFILE, DATAFILE, SILENCE and ZERO; the statement
/// START or PREGAP defines which part of the track precedes INDEX 01. The parser skips the type of
/// the disc (such as CD_DA), the flags of a track (COPY, PRE_EMPHASIS and the number of channels),
/// the codes ISRC and CATALOG, and CD_TEXT blocks. A length is a time mm:ss:ff or a number: of
/// stereo frames in an audio track, of bytes in a data track. A sound file whose name ends in
/// ".wav" is a WAVE file. Any other sound file contains raw samples: the high byte first, as the
/// format defines, or the low byte first with SWAP.
[[nodiscard]] Result<ImageLayout> parseToc(std::string_view sheet, std::string_view text);

} // namespace sonarith::disc
