// SPDX-License-Identifier: GPL-3.0-or-later
// What the analysis of MP3 files leaves behind it: the fields of the last headers and of the last
// tag. A program has one record. It is not cleared between files: what an analysis does not come to
// store is the value of a file before.
#pragma once

#include <cstdint>
#include <string>

namespace sonarith {

struct Mp3Info {
    // Of the header; stored together, at the end of an analysis that succeeds.
    std::int16_t Bitrate = 0;   ///< kilobits per second
    std::int32_t Frequency = 0; ///< Hz
    std::string Mode;
    std::string Emphasis;
    std::int16_t MpegVersion = 0; ///< 1, 2, 25 for 2.5, 0 for reserved
    std::int16_t MpegLayer = 0;   ///< 1 to 3, 0 for reserved
    std::string Padding;          ///< "yes" or "no", as those below
    std::string CRC;
    std::int32_t Duration = 0; ///< whole seconds
    std::string CopyRight;
    std::string Original;
    std::string Private;

    // Of the tag. Texts are UTF-8, and keep the NULs that stand in the file.
    bool HasTag = false;
    std::string TagMark; ///< neither written nor read
    std::string Title;
    std::string Artist;
    std::string Album;
    std::string Year;
    std::string Comment;    ///< 29 characters of it
    std::int16_t Genre = 0; ///< 0 to 255; 255 also for a file without a tag
    std::string Track;      ///< the comment's last character; nothing uses it

    // Of the header of variable bit rates; stored as soon as they are read.
    bool IsVbr = false;
    std::int16_t Frames = 0;
};

} // namespace sonarith
