// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/text.h"

#include <cstddef>

#include "platform/text/unicode.h"

namespace sonarith {
namespace {

/// The lone surrogates from firstByteSurrogate to lastByteSurrogate represent the bytes 0x80 to
/// 0xFF that are not part of valid UTF-8.
constexpr char16_t firstByteSurrogate = 0xDC80;
constexpr char16_t lastByteSurrogate = 0xDCFF;
constexpr char16_t byteSurrogateBase = 0xDC00;

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
        if (const std::size_t length = characterBytes(text.substr(at)); length > 0) {
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
