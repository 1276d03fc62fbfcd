// SPDX-License-Identifier: GPL-3.0-or-later
// Converts the name of one file or folder between the machine's notation and the logic's
// notation. It accesses no disk and handles no paths.
#pragma once

#include <string>
#include <string_view>

namespace sonarith {

/// Converts a name from the machine's notation to the logic's notation. Backslash, colon, star and
/// question mark, which the logic does not allow in names or treats as wildcards, are replaced by
/// characters that look similar and that common fonts contain: U+2216, U+02D0, U+2217, U+0294. The
/// mark U+00AC is inserted before each character of the name that already is one of these similar
/// characters, one of the four private-use characters that machineName() accepts, or U+00AC. All
/// other bytes are unchanged. The logic's conversion to lower case changes neither the similar
/// characters nor the mark. The mapping is injective.
[[nodiscard]] std::string logicName(std::string_view machineName);

/// The inverse of logicName(). Also accepts U+F05C, U+F03A, U+F02A and U+F03F for backslash, colon,
/// star and question mark: the settings stores of older versions contain names with these
/// private-use characters, which the screen shows as boxes.
[[nodiscard]] std::string machineName(std::string_view logicName);

/// Converts a name from the machine's notation to the notation that older versions stored: the
/// private-use characters replace backslash, colon, star and question mark, and no mark is
/// inserted. Different names may become the same name.
[[nodiscard]] std::string formerLogicName(std::string_view machineName);

/// Whether `logicName` may stand for two names in the machine's notation: machineName(logicName),
/// and another name that formerLogicName() converts to `logicName`.
[[nodiscard]] bool mayBeFormer(std::string_view logicName);

} // namespace sonarith
