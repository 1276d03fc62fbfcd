// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/text/windows_1252.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include <utf8proc.h>

#include "platform/text/unicode.h"

namespace sonarith {

namespace {

/// The characters of the bytes 80 to 9F (hexadecimal). For all other bytes, the code point is the
/// same number as the byte. Source:
/// https://www.unicode.org/Public/MAPPINGS/VENDORS/MICSFT/WINDOWS/CP1252.TXT
constexpr unsigned char firstSpecial = 0x80;
constexpr std::array<std::int32_t, 32> specials = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, //
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F, //
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, //
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

std::int32_t characterOf(unsigned char byte) {
    return byte >= firstSpecial && byte < firstSpecial + specials.size()
               ? specials[static_cast<std::size_t>(byte - firstSpecial)]
               : byte;
}

char byteOf(std::int32_t character) {
    const auto special = std::find(specials.begin(), specials.end(), character);
    if (special != specials.end()) {
        return static_cast<char>(firstSpecial + (special - specials.begin()));
    }
    const bool ofSameNumber =
        (character >= 0 && character < firstSpecial) || (character >= 0xA0 && character <= 0xFF);
    return ofSameNumber ? static_cast<char>(character) : '?';
}

/// Replaces each letter and the accents after it by the accented letter if Unicode has one. `text`
/// is valid UTF-8.
std::string composed(std::string_view text) {
    utf8proc_uint8_t* result = nullptr;
    const utf8proc_ssize_t length =
        utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                     static_cast<utf8proc_ssize_t>(text.size()), &result,
                     static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE));
    const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner(result, &std::free);
    // The library fails only when memory is exhausted; the text is then used unchanged.
    return length < 0 ? std::string(text)
                      : std::string(reinterpret_cast<const char*>(result),
                                    static_cast<std::size_t>(length));
}

bool isAccent(std::string_view character) {
    return utf8proc_get_property(charactersOf(character).front())->combining_class != 0;
}

/// Length in bytes of the character at the start of `text`, including the accents after it; 0 if
/// the text does not start with valid UTF-8.
std::size_t bytesWithAccents(std::string_view text) {
    std::size_t bytes = characterBytes(text);
    std::size_t next = bytes;
    while (next > 0) {
        next = characterBytes(text.substr(bytes));
        next = next > 0 && isAccent(text.substr(bytes, next)) ? next : 0;
        bytes += next;
    }
    return bytes;
}

} // namespace

std::string textOfWindows1252(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (const char byte : bytes) {
        std::array<utf8proc_uint8_t, 4> encoded{};
        const auto length =
            utf8proc_encode_char(characterOf(static_cast<unsigned char>(byte)), encoded.data());
        text.append(reinterpret_cast<const char*>(encoded.data()),
                    static_cast<std::size_t>(length));
    }
    return text;
}

std::string windows1252Of(std::string_view text) {
    std::string bytes;
    while (!text.empty()) {
        const std::size_t length = bytesWithAccents(text);
        if (length == 0) {
            bytes += '?';
            text.remove_prefix(1);
            continue;
        }
        const std::vector<std::int32_t> given = charactersOf(text.substr(0, length));
        const std::vector<std::int32_t> combined = charactersOf(composed(text.substr(0, length)));
        // composed() first splits each character into a letter and accents. A few characters stay
        // split, because Unicode excludes them from composition. For these, `given` is used.
        for (const std::int32_t character : combined.size() <= given.size() ? combined : given) {
            bytes += byteOf(character);
        }
        text.remove_prefix(length);
    }
    return bytes;
}

} // namespace sonarith
