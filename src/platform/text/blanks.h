// SPDX-License-Identifier: GPL-3.0-or-later
// Removes blanks at the ends of texts, and detects texts that contain only blanks. A blank is the
// character with code 32; tabs, line ends and other spaces are not blanks.
#pragma once

#include <string>
#include <string_view>

namespace sonarith {

/// Also true for the empty text.
[[nodiscard]] inline bool holdsOnlyBlanks(std::string_view text) {
    return text.find_first_not_of(' ') == std::string_view::npos;
}

[[nodiscard]] inline std::string withoutBlanksBehind(std::string_view text) {
    return std::string(text.substr(0, text.find_last_not_of(' ') + 1));
}

[[nodiscard]] inline std::string withoutBlanksAround(std::string_view text) {
    return holdsOnlyBlanks(text) ? std::string()
                                 : withoutBlanksBehind(text.substr(text.find_first_not_of(' ')));
}

} // namespace sonarith
