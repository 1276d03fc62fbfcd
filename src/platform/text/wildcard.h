// SPDX-License-Identifier: GPL-3.0-or-later
// The wildcard comparison that the product means by "matches". Not for file searches by the shell's
// rules: this one knows '#', is case-sensitive, and has no escape but a list of one character.
#pragma once

#include <string_view>

namespace sonarith {

/// Whether the whole of `text` fits `pattern`, both UTF-8, compared by characters (a byte that is
/// not valid UTF-8 is one character):
///   `*` any run, the empty one too;  `?` any one character;  `#` one digit 0 to 9;
///   `[list]` one character of the list, with ranges by code point such as a-z;
///   `[!list]` one character that is not in it;  `[]` the empty text;  `[!]` an exclamation mark.
/// `-` first or last in a list is itself, and so are `*?#[` in a list and `]` and `!` outside.
/// A pattern with an unclosed `[` or a range that runs backwards matches nothing.
/// Time is at most proportional to the product of both lengths, whatever the pattern.
[[nodiscard]] bool matches(std::string_view text, std::string_view pattern);

} // namespace sonarith
