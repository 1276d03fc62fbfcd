// SPDX-License-Identifier: GPL-3.0-or-later
// Blanks at the ends of texts. A blank is the character of code 32 alone: no tab, no line end and
// no other space counts.
#pragma once

#include <string>
#include <string_view>

namespace sonarith {

/// The empty text too.
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
