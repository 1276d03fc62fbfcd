// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/text/unicode.h"

#include <array>

#include <utf8proc.h>

namespace sonarith {

namespace {

/// The value of a stray byte (a byte that is not part of valid UTF-8) is strayByteBase plus the
/// byte. It differs from all code points, which end at 0x10FFFF.
constexpr std::int32_t strayByteBase = 0x110000;

/// One character at the start of a text: its value and its length in bytes.
struct Character {
    std::int32_t value;
    std::size_t length;
};

/// The character at the start of the text. Its length is 0 and its value meaningless if the text is
/// empty or does not start with valid UTF-8.
Character wellFormedCharacter(std::string_view text) {
    utf8proc_int32_t codePoint = -1;
    // No character is longer than four bytes. Cutting the text to four bytes also ensures that its
    // length fits into the library's signed type.
    const std::string_view window = text.substr(0, 4);
    const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(window.data()),
                                         static_cast<utf8proc_ssize_t>(window.size()), &codePoint);
    return {codePoint, length > 0 ? static_cast<std::size_t>(length) : 0};
}

Character firstCharacter(std::string_view text) {
    const Character character = wellFormedCharacter(text);
    return character.length > 0
               ? character
               : Character{strayByteBase + static_cast<unsigned char>(text.front()), 1};
}

void append(std::string& target, std::int32_t codePoint) {
    std::array<utf8proc_uint8_t, 4> bytes{};
    const auto length = utf8proc_encode_char(codePoint, bytes.data());
    target.append(reinterpret_cast<const char*>(bytes.data()), static_cast<std::size_t>(length));
}

/// The byte position after the first `count` characters.
std::size_t bytesOf(std::string_view text, std::size_t count) {
    std::size_t position = 0;
    for (; count > 0 && position < text.size(); --count) {
        position += firstCharacter(text.substr(position)).length;
    }
    return position;
}

} // namespace

std::vector<std::int32_t> charactersOf(std::string_view text) {
    std::vector<std::int32_t> characters;
    characters.reserve(text.size());
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        characters.push_back(character.value);
        text.remove_prefix(character.length);
    }
    return characters;
}

std::string lowerCase(std::string_view text) {
    std::string lower;
    lower.reserve(text.size());
    // This loop is faster for the ASCII characters at the start. Hundreds of thousands of file
    // paths are lower-cased, and most of them are ASCII.
    std::size_t plain = 0;
    while (plain < text.size() && static_cast<unsigned char>(text[plain]) < 0x80) {
        const char c = text[plain++];
        lower += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    text.remove_prefix(plain);
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        if (character.value >= strayByteBase) {
            lower += text.front();
        } else {
            append(lower, utf8proc_tolower(character.value));
        }
        text.remove_prefix(character.length);
    }
    return lower;
}

std::string caseFolded(std::string_view text) {
    std::string folded;
    folded.reserve(text.size());
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        if (character.value >= strayByteBase) {
            folded += text.front();
        } else {
            // The character is lower-cased before it is folded: the dotted capital I (U+0130) folds
            // to two characters, but its lower case folds to one. Without this step, a text and its
            // lower case would be folded to different texts.
            std::array<utf8proc_int32_t, 4> parts{};
            int boundClass = 0;
            const auto count = utf8proc_decompose_char(
                utf8proc_tolower(character.value), parts.data(),
                static_cast<utf8proc_ssize_t>(parts.size()), UTF8PROC_CASEFOLD, &boundClass);
            for (utf8proc_ssize_t i = 0; i < count && i < 4; ++i) {
                append(folded, parts[static_cast<std::size_t>(i)]);
            }
        }
        text.remove_prefix(character.length);
    }
    return folded;
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
    return a == b || caseFolded(a) == caseFolded(b);
}

std::string leftCharacters(std::string_view text, std::size_t count) {
    return std::string(text.substr(0, bytesOf(text, count)));
}

std::string midCharacters(std::string_view text, std::size_t first, std::size_t count) {
    const std::string_view rest = text.substr(bytesOf(text, first > 0 ? first - 1 : 0));
    return leftCharacters(rest, count);
}

std::size_t characterCount(std::string_view text) {
    std::size_t count = 0;
    while (!text.empty()) {
        text.remove_prefix(firstCharacter(text).length);
        ++count;
    }
    return count;
}

std::size_t characterBytes(std::string_view text) {
    return wellFormedCharacter(text).length;
}

bool isValidUtf8(std::string_view text) {
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        if (character.value >= strayByteBase) {
            return false;
        }
        text.remove_prefix(character.length);
    }
    return true;
}

} // namespace sonarith
