// SPDX-License-Identifier: GPL-3.0-or-later
// Analyses one MP3 file: its first frame header, the frame count if the bit rate is variable, and
// the tag at its end. Reads the first 5,047 bytes and the last 256 bytes. Of a header, only the
// first two bytes are checked, so meaningless values may be stored for a file that is no MP3.
#pragma once

#include <string>

#include "formats/mp3_info.h"
#include "platform/file_system.h"
#include "platform/result.h"

namespace sonarith {

enum class TagReading { no, yes };
enum class HeaderReading { no, yes };

/// Analyses the file and stores the results in `info`. Deliberate: the returned record is empty.
/// Fields of the header change only with HeaderReading::yes. On a failure, the fields IsVbr and
/// Frames and those of the tag may already have been stored. Does not yield. Errors: those of
/// ReadMp3Bits(), of FileSystem::fileLength() and of decodeMp3Header().
Result<Mp3Info> GetMp3Info(FileSystem& files, const std::string& path, TagReading readTag,
                           HeaderReading readHeader, Mp3Info& info);

/// With HeaderReading::yes, finds the first frame, stores IsVbr and (only for a variable bit rate)
/// Frames, and returns the four header bytes as digits (see BytesToBits()). For a file without a
/// frame, returns the digits of a zero byte and the file's first three bytes. With
/// HeaderReading::no, returns an empty text. With TagReading::yes, stores the tag's fields.
///
/// Errors:
/// - those of opening the file, querying its length and reading its head;
/// - invalidProcedureCall for a file below 256 bytes (nothing is stored);
/// - overflow for a frame count above 32767 (IsVbr is stored).
Result<std::string> ReadMp3Bits(FileSystem& files, const std::string& path, TagReading readTag,
                                HeaderReading readHeader, Mp3Info& info);

} // namespace sonarith
