// SPDX-License-Identifier: GPL-3.0-or-later
// Checks the bytes of a settings file before they are used. Distinguishes a complete settings file
// from a truncated one and from a file of another format. Reads no values and no keys.
#pragma once

#include <cstddef>
#include <string_view>

namespace sonarith {

enum class StoreFileState {
    whole,  ///< a complete settings file
    torn,   ///< the last line has no line feed, or a value ends within quotes or an escape sequence
    foreign ///< contains something that no settings file contains
};

/// A settings file with more bytes than this is treated as foreign. The limit leaves about 670
/// bytes for each path of a playlist of 100,000 paths, which is ten times the number for which the
/// playlist's window is designed.
inline constexpr std::size_t longestStoreFileBytes = 64 * 1024 * 1024;

/// The format is UTF-8 without NUL. Each line ends with a line feed. A line is blank, a comment, a
/// section in brackets, or a key, '=' and a value. A comment starts with ';', not with '#', which
/// QSettings reads as the start of a key. The quotes of a value are balanced. A value does not end
/// within an escape sequence, which is a backslash and the character after it. An empty file is
/// complete.
[[nodiscard]] StoreFileState checkStoreFile(std::string_view bytes);

} // namespace sonarith
