// SPDX-License-Identifier: GPL-3.0-or-later
// The wildcard comparison that the logic uses when it matches a text against a pattern. Unlike in
// a shell pattern, '#' stands for a digit, and there is no escape character: to match a special
// character, write a list that contains only this character. The comparison is case-sensitive.
#pragma once

#include <string_view>

namespace sonarith {

/// Whether the whole of `text` matches `pattern`. Both are UTF-8 and compared by characters (a byte
/// that is not valid UTF-8 is one character):
///   `*` any run of characters, including the empty run;
///   `?` any one character;  `#` one digit 0 to 9;
///   `[list]` one character of the list, with ranges by code point such as a-z;
///   `[!list]` one character that is not in the list;
///   `[]` the empty text;  `[!]` an exclamation mark.
/// `-` stands for itself if it is the first or the last character of a list. `*`, `?`, `#` and `[`
/// stand for themselves in a list, and so do `]` and `!` outside a list.
/// A pattern with an unclosed `[` or a reversed range matches no text, not even the empty text.
/// For any pattern, the time is at most proportional to the product of the lengths of `text` and
/// `pattern`.
[[nodiscard]] bool matches(std::string_view text, std::string_view pattern);

} // namespace sonarith
