// SPDX-License-Identifier: GPL-3.0-or-later
// Returns the reply in a buffer of fixed size. Not for ordinary text: a text without a NUL gives an
// empty result, because a buffer without a NUL means that no reply was written.
#pragma once

#include <string>
#include <string_view>

namespace sonarith {

/// The text before the first NUL; an empty text if there is no NUL.
[[nodiscard]] inline std::string CutAtNull(std::string_view text) {
    const auto end = text.find('\0');
    return end == std::string_view::npos ? std::string() : std::string(text.substr(0, end));
}

} // namespace sonarith
