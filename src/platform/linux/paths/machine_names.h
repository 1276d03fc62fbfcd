// SPDX-License-Identifier: GPL-3.0-or-later
// One name of a file or folder in the machine's form and in the logic's. It looks at no disk and
// knows no paths.
#pragma once

#include <string>
#include <string_view>

namespace sonarith {

/// The machine's name in the logic's form. A backslash, colon, star or question mark, which no name
/// of the logic holds or which it takes for a wildcard, is shown by a character that looks alike
/// and that the common fonts have: U+2216, U+02D0, U+2217, U+0294. Where the name itself holds one
/// of these, U+00AC precedes it, as it precedes itself. All other bytes stay as they are.
/// None of these characters has an upper or lower case, so that they survive the logic's lower
/// case. Different names have different forms.
[[nodiscard]] std::string logicName(std::string_view machineName);

/// Back from logicName(). Also takes U+F05C, U+F03A, U+F02A and U+F03F for the four: stores written
/// before hold names in which these private-use characters, boxes on the screen, stood for them.
[[nodiscard]] std::string machineName(std::string_view logicName);

/// The form that stores written before hold: private-use characters for the four, and nothing
/// before a character that looks like one of them. Different names may have the same form.
[[nodiscard]] std::string formerLogicName(std::string_view machineName);

/// Whether the name of the logic would read differently in the former form.
[[nodiscard]] bool mayBeFormer(std::string_view logicName);

} // namespace sonarith
