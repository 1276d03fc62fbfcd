// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/text.h"

#include <cstddef>

namespace sonarith {
namespace {

/// A lone surrogate from here to here + 0x7F stands for a byte from 0x80 to 0xFF.
constexpr char16_t firstByteSurrogate = 0xDC80;
constexpr char16_t lastByteSurrogate = 0xDCFF;
constexpr char16_t byteSurrogateBase = 0xDC00;

/// How many bytes the UTF-8 sequence has that begins `text` (not empty); 0 if it is not valid.
/// Bounds of the second byte after table 3-7 of the Unicode standard.
std::size_t sequenceLength(std::string_view text) {
    const auto byteAt = [&](std::size_t i) {
        return static_cast<unsigned char>(text[i]);
    };
    const unsigned char lead = byteAt(0);
    std::size_t length = 0;
    unsigned char lowest = 0x80;
    unsigned char highest = 0xBF;
    if (lead < 0x80) {
        return 1;
    }
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        lowest = lead == 0xE0 ? 0xA0 : 0x80;
        highest = lead == 0xED ? 0x9F : 0xBF;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        lowest = lead == 0xF0 ? 0x90 : 0x80;
        highest = lead == 0xF4 ? 0x8F : 0xBF;
    }
    if (length == 0 || text.size() < length || byteAt(1) < lowest || byteAt(1) > highest) {
        return 0;
    }
    for (std::size_t i = 2; i < length; ++i) {
        if (byteAt(i) < 0x80 || byteAt(i) > 0xBF) {
            return 0;
        }
    }
    return length;
}

} // namespace

QString toQString(std::string_view text) {
    QString converted;
    converted.reserve(static_cast<qsizetype>(text.size()));
    std::size_t validFrom = 0;
    std::size_t at = 0;
    const auto appendValid = [&] {
        converted +=
            QString::fromUtf8(text.data() + validFrom, static_cast<qsizetype>(at - validFrom));
    };
    while (at < text.size()) {
        if (const std::size_t length = sequenceLength(text.substr(at)); length > 0) {
            at += length;
            continue;
        }
        appendValid();
        const auto byte = static_cast<unsigned char>(text[at]);
        converted += QChar(static_cast<char16_t>(byteSurrogateBase + byte));
        validFrom = ++at;
    }
    appendValid();
    return converted;
}

std::string toText(const QString& text) {
    std::string converted;
    qsizetype validFrom = 0;
    qsizetype at = 0;
    const auto appendValid = [&] {
        converted += text.mid(validFrom, at - validFrom).toUtf8().toStdString();
    };
    while (at < text.size()) {
        const char16_t unit = text[at].unicode();
        if (text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate()) {
            at += 2;
        } else if (unit >= firstByteSurrogate && unit <= lastByteSurrogate) {
            appendValid();
            converted += static_cast<char>(unit - byteSurrogateBase);
            validFrom = ++at;
        } else if (text[at].isSurrogate()) {
            appendValid();
            converted += "\xEF\xBF\xBD";
            validFrom = ++at;
        } else {
            ++at;
        }
    }
    appendValid();
    return converted;
}

} // namespace sonarith
