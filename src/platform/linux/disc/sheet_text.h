// SPDX-License-Identifier: GPL-3.0-or-later
// Splits sheets into lines and words, reads numbers and times, and creates error messages, for the
// parsers of CUE and TOC sheets. Also defines the size limits of an image. Nothing here depends on
// one of the two formats.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/disc/disc.h"
#include "platform/linux/disc/image_layout.h"
#include "platform/result.h"

namespace sonarith::disc {

/// The longest sheet that is read. A CUE sheet of 99 tracks with 99 indices each is about 220 KiB
/// long.
inline constexpr std::size_t maxSheetBytes = std::size_t{1} << 20;
/// The longest line: the longest path of the system (4096 bytes), and as much again for the rest of
/// the line.
inline constexpr std::size_t maxLineBytes = 8192;
/// The most files of one image: two for each track (its pause and its sound). All of them stay
/// open.
inline constexpr std::size_t maxImageFiles = 2 * maxTracks;
/// The number of sectors that the times of a disc's table of contents can address: they end at
/// 99:59:74 (IEC 60908: two digits for each part).
inline constexpr std::int64_t maxDiscSectors = 100 * 60 * sectorsPerSecond;
/// The same length in sample frames, the longest content of any disc. This bound keeps all sums of
/// lengths far from overflow.
inline constexpr std::int64_t maxDiscFrames = maxDiscSectors * framesPerSector;

/// The message "SHEET, line N: cause", or "SHEET: cause" for line 0, as a deviceInputOutput error.
[[nodiscard]] Error sheetError(std::string_view sheet, int line, std::string_view cause);
/// The same message, with the text and the error number of `cause`.
[[nodiscard]] Error sheetError(std::string_view sheet, int line, const Error& cause);
/// `text` in quotation marks, safe to display: valid UTF-8, no ASCII control characters, bounded in
/// length.
[[nodiscard]] std::string shown(std::string_view text);
/// A length as mm:ss:ff.
[[nodiscard]] std::string msfText(std::int64_t sectors);

/// The lines of a sheet without their ends (LF, CR LF or CR) and without a byte-order mark. Fails
/// if the text or a line is too long, or if a line contains a NUL. The error message contains
/// `sheet`, which is the sheet's name, and for a faulty line also the line's number.
[[nodiscard]] Result<std::vector<std::string_view>> linesOf(std::string_view sheet,
                                                            std::string_view text);

/// Removes the first word of `rest` (up to a blank or tab) and the blanks around the word; returns
/// the word.
[[nodiscard]] std::string_view takeWord(std::string_view& rest);
/// Equality that ignores the case of ASCII letters.
[[nodiscard]] bool sameWord(std::string_view a, std::string_view b);

/// Reads a whole number from 0 to `most` that consists of digits only. The errors of this function
/// and of those below state the cause without sheet and line.
[[nodiscard]] Result<std::int64_t> parseNumber(std::string_view word, std::int64_t most);
/// Reads a time mm:ss:ff and returns it in sectors.
[[nodiscard]] Result<std::int64_t> parseMsf(std::string_view word);

/// Refuses names that are empty or absolute, or that contain a NUL or the folder "..".
[[nodiscard]] Status checkImageName(std::string_view name);

/// Returns the index in `files` of the entry with the name and format of `file`. Appends `file` if
/// there is no such entry.
[[nodiscard]] Result<std::size_t> fileIndex(std::vector<LayoutFile>& files, LayoutFile file);

} // namespace sonarith::disc
