// SPDX-License-Identifier: GPL-3.0-or-later
// Converts between the logic's texts (UTF-8 bytes) and Qt's texts (QString). File names may contain
// bytes that are not UTF-8; a conversion to QString and back preserves these bytes. ui/mnemonics.h
// prepares captions for display.
#pragma once

#include <string>
#include <string_view>

#include <QString>

namespace sonarith {

/// Each byte that is not part of valid UTF-8 becomes the lone low surrogate U+DC00 + byte. Valid
/// text contains no lone surrogates.
[[nodiscard]] QString toQString(std::string_view text);

/// The inverse of toQString. A lone surrogate that represents no such byte becomes U+FFFD.
[[nodiscard]] std::string toText(const QString& text);

} // namespace sonarith
