// SPDX-License-Identifier: GPL-3.0-or-later
// Reads an MP3 file with libmpg123: the header of the first frame, the number of frames, and the
// title in the tag. Tests compare these values with those of the program's own header analysis
// (formats/mp3_analysis.h).
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "platform/linux/late/mpg123.h"

namespace sonarith::test {

SONARITH_LATE_FUNCTION(mpg123Library, mpg123_framelength);
SONARITH_LATE_FUNCTION(mpg123Library, mpg123_id3);
SONARITH_LATE_FUNCTION(mpg123Library, mpg123_info);
SONARITH_LATE_FUNCTION(mpg123Library, mpg123_open);
SONARITH_LATE_FUNCTION(mpg123Library, mpg123_scan);

struct SecondOpinion {
    mpg123_frameinfo first{}; ///< header of the first frame, even if it is an information frame
    std::int64_t frames = 0;  ///< number of frames, including an information frame
    std::optional<std::string> title = std::nullopt; ///< from an ID3v1 tag; nothing without a tag
};

/// Returns nothing for a file that the decoder does not accept.
[[nodiscard]] inline std::optional<SecondOpinion>
secondOpinionOf(const std::filesystem::path& file) {
    mpg123_init();
    mpg123_handle* decoder = mpg123_new(nullptr, nullptr);
    mpg123_param2(decoder, MPG123_ADD_FLAGS, MPG123_QUIET | MPG123_IGNORE_INFOFRAME, 0);
    SecondOpinion opinion;
    bool read = mpg123_open(decoder, file.c_str()) == MPG123_OK;
    // The scan reads all frames. So the header of the first frame is read before the scan.
    read = read && mpg123_info(decoder, &opinion.first) == MPG123_OK;
    read = read && mpg123_scan(decoder) == MPG123_OK;
    opinion.frames = mpg123_framelength(decoder);
    mpg123_id3v1* tag = nullptr;
    mpg123_id3v2* otherTag = nullptr;
    if (read && mpg123_id3(decoder, &tag, &otherTag) == MPG123_OK && tag != nullptr) {
        const std::string field(tag->title, sizeof(tag->title));
        opinion.title = field.substr(0, field.find_last_not_of(std::string(" \0", 2)) + 1);
    }
    mpg123_delete(decoder);
    return read ? std::optional(opinion) : std::nullopt;
}

} // namespace sonarith::test
