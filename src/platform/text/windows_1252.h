// SPDX-License-Identifier: GPL-3.0-or-later
// Conversion between Windows-1252, the code page of single-byte texts in files, and UTF-8. The five
// bytes that the page leaves undefined (81, 8D, 8F, 90, 9D) map to the control characters of the
// same codes, so that a conversion to UTF-8 and back preserves every byte.
#pragma once

#include <string>
#include <string_view>

namespace sonarith {

/// One character for each byte.
[[nodiscard]] std::string textOfWindows1252(std::string_view bytes);

/// One byte for each character, "?" for a character that the page does not contain (including a
/// byte that is not valid UTF-8). A letter followed by accents counts as the accented letter if
/// Unicode has one: "e" and U+0301 become one byte, E9.
[[nodiscard]] std::string windows1252Of(std::string_view text);

} // namespace sonarith
