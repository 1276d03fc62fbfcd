// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/machine_names.h"

#include <algorithm>
#include <array>

namespace sonarith {

namespace {

/// A character that no name of the logic holds, and what shows it there.
struct Sign {
    char character;
    std::string_view shown;
};
constexpr std::array<Sign, 4> signs{{{'\\', "\xef\x81\x9c"},  // U+F05C
                                     {':', "\xef\x80\xba"},   // U+F03A
                                     {'*', "\xef\x80\xaa"},   // U+F02A
                                     {'?', "\xef\x80\xbf"}}}; // U+F03F

std::string replaced(std::string_view text, std::string_view what, std::string_view by) {
    std::string result;
    for (std::size_t end = text.find(what); end != std::string_view::npos; end = text.find(what)) {
        result.append(text.substr(0, end)).append(by);
        text.remove_prefix(end + what.size());
    }
    return result.append(text);
}

} // namespace

std::string machineName(std::string_view logicName) {
    std::string name(logicName);
    for (const Sign& sign : signs) {
        name = replaced(name, sign.shown, std::string_view(&sign.character, 1));
    }
    return name;
}

std::string logicName(std::string_view machineName) {
    std::string name;
    name.reserve(machineName.size());
    for (const char character : machineName) {
        const auto* const sign = std::find_if(
            signs.begin(), signs.end(), [&](const Sign& s) { return s.character == character; });
        sign != signs.end() ? name.append(sign->shown) : name.append(1, character);
    }
    return name;
}

} // namespace sonarith
