// SPDX-License-Identifier: GPL-3.0-or-later
// Converts the case of UTF-8 text and splits it into characters by Unicode's rules, in the same way
// in every locale. A byte that is not part of valid UTF-8 counts as one character and is never
// changed, so that file names of arbitrary bytes are preserved. Texts are not normalized.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sonarith {

/// Returns one value for each character: its Unicode code point. A byte that is not part of valid
/// UTF-8 has a value above all code points; different bytes have different values.
[[nodiscard]] std::vector<std::int32_t> charactersOf(std::string_view text);

/// Maps every character to its simple lower case, which is one character.
[[nodiscard]] std::string lowerCase(std::string_view text);

/// Whether two texts are equal except for case (full case folding: "Straße" equals "STRASSE"). A
/// text always equals its lowerCase().
[[nodiscard]] bool equalIgnoringCase(std::string_view a, std::string_view b);

/// A map key that is the same for all texts that equalIgnoringCase() considers equal.
[[nodiscard]] std::string caseFolded(std::string_view text);

/// The first `count` characters; the whole text if it has fewer characters.
[[nodiscard]] std::string leftCharacters(std::string_view text, std::size_t count);
/// `count` characters from position `first` (1 is the first character); fewer or none if the text
/// is too short.
[[nodiscard]] std::string midCharacters(std::string_view text, std::size_t first,
                                        std::size_t count);
[[nodiscard]] std::size_t characterCount(std::string_view text);

/// Length in bytes of the well-formed UTF-8 character (RFC 3629) at the start of `text`; 0 if there
/// is none.
[[nodiscard]] std::size_t characterBytes(std::string_view text);

/// Whether the whole text is valid UTF-8.
[[nodiscard]] bool isValidUtf8(std::string_view text);

} // namespace sonarith
