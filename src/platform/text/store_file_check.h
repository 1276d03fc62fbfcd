// SPDX-License-Identifier: GPL-3.0-or-later
// Judges the bytes of a settings file before anybody trusts them. It reads no values and knows no
// keys: it tells a whole file of our form from a torn one and from somebody else's.
#pragma once

#include <cstddef>
#include <string_view>

namespace sonarith {

enum class StoreFileState {
    whole,
    torn,   ///< ends in the middle of a line or of a value
    foreign ///< holds what no settings file holds
};

/// A settings file of more bytes than this is taken for foreign. The largest that the program
/// writes is a playlist of some 100,000 paths.
inline constexpr std::size_t longestStoreFileBytes = 64 * 1024 * 1024;

/// The form: UTF-8 without NUL; each line, ended by a line feed, is blank, a comment (';';
/// QSettings takes a '#' for the beginning of a key), a section in brackets, or a key, '=' and a
/// value with balanced quotes that does not end in a lone backslash. An empty file is whole.
[[nodiscard]] StoreFileState checkStoreFile(std::string_view bytes);

} // namespace sonarith
