// SPDX-License-Identifier: GPL-3.0-or-later
// Finds and removes blanks at the ends of texts. Only character code 32 is a blank, not a tab, a
// line end or another space.
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
