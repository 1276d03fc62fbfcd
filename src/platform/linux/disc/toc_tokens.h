// SPDX-License-Identifier: GPL-3.0-or-later
// Splits the text of a cdrdao TOC into words, strings and braces. It parses no grammar.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/result.h"

namespace sonarith::disc {

enum class TocTokenKind { word, string, openBrace, closeBrace, end };

struct TocToken {
    TocTokenKind kind = TocTokenKind::end;
    std::string_view text; ///< of a string: the text between the quotation marks, with its escapes
    int line = 0;
};

/// The tokens of `text` (which must outlive them), terminated by a token of kind `end`. Comments
/// begin with two slashes and end at the end of their line. `sheet` is the name of the TOC in error
/// messages. Errors: those of linesOf() (sheet_text.h); an unterminated string.
[[nodiscard]] Result<std::vector<TocToken>> tocTokens(std::string_view sheet,
                                                      std::string_view text);

/// The text of a string token after its escapes were decoded: \" and \\ and \ooo (a byte in three
/// octal digits).
[[nodiscard]] std::string unescaped(std::string_view text);

} // namespace sonarith::disc
