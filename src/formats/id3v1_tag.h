// SPDX-License-Identifier: GPL-3.0-or-later
// Parses and creates the ID3v1 tag, the last 128 bytes of an MP3 file. Deliberate: reading is not
// the inverse of writing, because only 29 of the comment's 30 bytes are read as the comment, and a
// genre with code 32 (a blank) is not read. The texts of a tag are in the code page of
// windows_1252.h.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "formats/mp3_info.h"

namespace sonarith {

inline constexpr std::size_t tagLength = 128;
/// How many bytes at the end of a file are searched for a tag.
inline constexpr std::size_t tagSearchLength = 256;

/// Stores the tag's fields in `info`. The tag begins at the first "tag" in the file's last bytes,
/// in upper or lower case, even if those letters belong to the audio data. If no tag is found, the
/// texts are empty and the genre is 255. Blanks at the end of a field are removed, other padding is
/// not. If the genre has code 32 or is beyond the end of the file, `info.Genre` is left unchanged:
/// if `info` was used for another file before, it keeps the genre of that file.
void readId3v1Tag(std::string_view lastBytes, Mp3Info& info);

/// The fields of a tag, in the order of the file.
struct Id3v1Fields {
    std::string title = {};   ///< 30 bytes from offset 3
    std::string artist = {};  ///< 30 from 33
    std::string album = {};   ///< 30 from 63
    std::string year = {};    ///< 4 from 93
    std::string comment = {}; ///< 30 from 97
    std::uint8_t genre = 0;
};

/// The complete tag. A shorter text is padded with blanks; of a longer text only the first bytes
/// are written.
[[nodiscard]] std::array<std::byte, tagLength> id3v1Tag(const Id3v1Fields& fields);

} // namespace sonarith
