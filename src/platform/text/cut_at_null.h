// SPDX-License-Identifier: GPL-3.0-or-later
// Extracts the text of a reply from a buffer of fixed size. Not for ordinary text: for a buffer
// without a NUL, the result is empty, because such a buffer contains no reply.
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
