// SPDX-License-Identifier: GPL-3.0-or-later
// One name of a file or folder in the machine's form and in the logic's. It looks at no disk and
// knows no paths.
#pragma once

#include <string>
#include <string_view>

namespace sonarith {

/// A name of the logic as the machine's, and back. A backslash, colon, star or question mark that a
/// Linux name holds is shown as the private-use character U+F05C, U+F03A, U+F02A or U+F03F: no name
/// of the logic holds these four, and it takes the last two for wildcards. All other bytes stay as
/// they are.
[[nodiscard]] std::string machineName(std::string_view logicName);
[[nodiscard]] std::string logicName(std::string_view machineName);

} // namespace sonarith
