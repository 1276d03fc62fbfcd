// SPDX-License-Identifier: GPL-3.0-or-later
// The code page of single-byte texts in files, Windows-1252, from and to UTF-8. The five bytes that
// the page leaves undefined (81, 8D, 8F, 90, 9D) are the control characters of the same codes, so
// that every byte has a character and comes back as the byte it was.
#pragma once

#include <string>
#include <string_view>

namespace sonarith {

/// One character for each byte.
[[nodiscard]] std::string textOfWindows1252(std::string_view bytes);

/// One byte for each character, "?" for one that the page has not (a byte that is not valid UTF-8
/// too). A letter with accents behind it is the accented letter if Unicode has one: "e" and U+0301
/// are one byte, E9.
[[nodiscard]] std::string windows1252Of(std::string_view text);

} // namespace sonarith
