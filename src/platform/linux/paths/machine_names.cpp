// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/machine_names.h"

#include <algorithm>
#include <array>

namespace sonarith {

namespace {

struct Sign {
    char character;
    std::string_view shown;  ///< the current replacement character
    std::string_view former; ///< the replacement character in names that older versions stored
};
constexpr std::array<Sign, 4> signs{{{'\\', "\u2216", "\uf05c"},
                                     {':', "\u02d0", "\uf03a"},
                                     {'*', "\u2217", "\uf02a"},
                                     {'?', "\u0294", "\uf03f"}}};
/// The escape character. The special character (see specialBytesAt()) that follows the mark is
/// literal.
constexpr std::string_view mark = "\u00ac";
constexpr unsigned char firstBeyondAscii = 0x80;

const Sign* signOf(char character) {
    const auto* const found = std::find_if(signs.begin(), signs.end(),
                                           [&](const Sign& s) { return s.character == character; });
    return found != signs.end() ? found : nullptr;
}

/// The sign whose replacement character, current or former, is at the beginning of `text`.
const Sign* signShownAt(std::string_view text) {
    const auto* const found = std::find_if(signs.begin(), signs.end(), [&](const Sign& s) {
        return text.starts_with(s.shown) || text.starts_with(s.former);
    });
    return found != signs.end() ? found : nullptr;
}

/// A special character is the mark or a replacement character, current or former. Returns the
/// length in bytes of the special character at the beginning of `text`; 0 if there is none. Bytes
/// are compared, so that special characters are found in names with invalid UTF-8, too.
std::size_t specialBytesAt(std::string_view text) {
    if (text.empty() || static_cast<unsigned char>(text.front()) < firstBeyondAscii) {
        return 0;
    }
    if (text.starts_with(mark)) {
        return mark.size();
    }
    const Sign* sign = signShownAt(text);
    if (sign == nullptr) {
        return 0;
    }
    return text.starts_with(sign->shown) ? sign->shown.size() : sign->former.size();
}

/// Whether the name is ASCII without backslash, colon, star and question mark, so that it needs no
/// conversion. This check makes the conversion fast for nearly all names; a search converts the
/// name of each file.
bool isPlain(std::string_view name) {
    return std::all_of(name.begin(), name.end(), [](char c) {
        return static_cast<unsigned char>(c) < firstBeyondAscii && signOf(c) == nullptr;
    });
}

} // namespace

std::string logicName(std::string_view machineName) {
    if (isPlain(machineName)) {
        return std::string(machineName);
    }
    std::string name;
    name.reserve(machineName.size());
    while (!machineName.empty()) {
        const std::size_t special = specialBytesAt(machineName);
        const std::size_t taken = std::max<std::size_t>(special, 1);
        if (const Sign* sign = signOf(machineName.front())) {
            name.append(sign->shown);
        } else {
            name.append(special > 0 ? mark : "").append(machineName.substr(0, taken));
        }
        machineName.remove_prefix(taken);
    }
    return name;
}

std::string machineName(std::string_view logicName) {
    std::string name;
    name.reserve(logicName.size());
    while (!logicName.empty()) {
        if (logicName.starts_with(mark)) {
            // logicName() writes a mark only before a special character, so any other mark is
            // literal.
            const std::size_t marked = specialBytesAt(logicName.substr(mark.size()));
            name.append(marked > 0 ? logicName.substr(mark.size(), marked) : mark);
            logicName.remove_prefix(mark.size() + marked);
            continue;
        }
        const Sign* sign = signShownAt(logicName);
        name.append(1, sign != nullptr ? sign->character : logicName.front());
        logicName.remove_prefix(std::max<std::size_t>(specialBytesAt(logicName), 1));
    }
    return name;
}

std::string formerLogicName(std::string_view machineName) {
    std::string name;
    for (const char character : machineName) {
        const Sign* sign = signOf(character);
        sign != nullptr ? name.append(sign->former) : name.append(1, character);
    }
    return name;
}

bool mayBeFormer(std::string_view logicName) {
    for (; !logicName.empty(); logicName.remove_prefix(1)) {
        if (specialBytesAt(logicName) > 0) {
            return true;
        }
    }
    return false;
}

} // namespace sonarith
