// SPDX-License-Identifier: GPL-3.0-or-later
// Stores the results of the analysis of MP3 files: the fields of the header and of the tag that
// were read last. There is one record per program. It is not cleared between files: fields that an
// analysis does not store keep the values of an earlier file.
#pragma once

#include <cstdint>
#include <string>

namespace sonarith {

struct Mp3Info {
    // Fields of the header; stored together at the end of a successful analysis.
    std::int16_t Bitrate = 0;   ///< kilobits per second
    std::int32_t Frequency = 0; ///< Hz
    std::string Mode;
    std::string Emphasis;
    /// 0 before a header is stored, then 1: headers of other versions are not stored.
    std::int16_t MpegVersion = 0;
    std::int16_t MpegLayer = 0; ///< 1 to 3; 0 before a header is stored
    std::string Padding;        ///< "yes" or "no"
    std::string CRC;            ///< "yes" or "no"
    std::int32_t Duration = 0;  ///< whole seconds
    std::string CopyRight;      ///< "yes" or "no"
    std::string Original;       ///< "yes" or "no"
    std::string Private;        ///< "yes" or "no"

    // Fields of the tag. Texts are UTF-8 and include the NULs of the file.
    bool HasTag = false;
    std::string TagMark; ///< not used by the program
    std::string Title;
    std::string Artist;
    std::string Album;
    std::string Year;
    std::string Comment;    ///< the first 29 characters
    std::int16_t Genre = 0; ///< 0 to 255; 255 also for a file without a tag
    std::string Track;      ///< the 30th character of the tag's comment; not used by the program

    // Fields of the additional header that marks a file of variable bit rate; stored as soon as
    // they are read. For a file without this header, IsVbr becomes false and Frames is unchanged.
    bool IsVbr = false;
    std::int16_t Frames = 0;
};

} // namespace sonarith
