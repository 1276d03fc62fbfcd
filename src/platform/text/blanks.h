// SPDX-License-Identifier: GPL-3.0-or-later
// Blanks at the ends of texts. A blank is character code 32 only, not a tab, a line end or another
// space.
#pragma once

#include <string>
#include <string_view>

namespace sonarith {

/// True for the empty text, too.
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
