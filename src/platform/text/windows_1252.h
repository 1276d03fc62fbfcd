// SPDX-License-Identifier: GPL-3.0-or-later
// Converts between UTF-8 and Windows-1252, the code page of single-byte texts in files. The five
// bytes that the page leaves undefined (81, 8D, 8F, 90, 9D) map to the control characters of the
// same codes, so that a conversion to UTF-8 and back preserves every byte.
#pragma once

#include <string>
#include <string_view>

namespace sonarith {

/// Converts each byte to one character.
[[nodiscard]] std::string textOfWindows1252(std::string_view bytes);

/// Converts each character to one byte. A character that the page does not contain, or a byte that
/// is not part of valid UTF-8, becomes "?". A letter followed by accents counts as the accented
/// letter if Unicode has one: "e" and U+0301 become one byte, E9.
[[nodiscard]] std::string windows1252Of(std::string_view text);

} // namespace sonarith
