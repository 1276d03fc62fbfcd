// SPDX-License-Identifier: GPL-3.0-or-later
// Converts the name of one file or folder between the machine's form and the logic's form. It
// accesses no disk and handles no paths.
#pragma once

#include <string>
#include <string_view>

namespace sonarith {

/// The machine's name in the logic's form. Backslash, colon, star and question mark, which the
/// logic does not allow in names or treats as wildcards, are replaced by characters that look
/// similar and that common fonts contain: U+2216, U+02D0, U+2217, U+0294. If the machine's name
/// already contains one of these similar characters, one of the four private-use characters that
/// machineName() accepts, or U+00AC, a U+00AC is inserted before that character as a mark. All
/// other bytes are unchanged. The logic's conversion to lower case changes neither the similar
/// characters nor the mark. The mapping is injective.
[[nodiscard]] std::string logicName(std::string_view machineName);

/// The inverse of logicName(). Also accepts U+F05C, U+F03A, U+F02A and U+F03F for backslash, colon,
/// star and question mark: older stores contain names with these private-use characters, which the
/// screen shows as boxes.
[[nodiscard]] std::string machineName(std::string_view logicName);

/// The machine's name in the form of older stores: the private-use characters replace backslash,
/// colon, star and question mark, and no mark is inserted. Different names of the machine may have
/// the same form.
[[nodiscard]] std::string formerLogicName(std::string_view machineName);

/// Whether the logic's name may mean one name of the machine in the present form and another in the
/// form of older stores.
[[nodiscard]] bool mayBeFormer(std::string_view logicName);

} // namespace sonarith
