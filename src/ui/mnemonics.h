// SPDX-License-Identifier: GPL-3.0-or-later
// Keyboard letters for captions that name none: one letter of each is underlined, and the text
// that is read stays as it is.
#pragma once

#include <QString>
#include <QStringList>

namespace sonarith {

/// The captions with "&" before the letter that opens each, all letters different as far as that
/// goes: the first letter of a word first, then any letter. An ampersand of the caption's own is
/// doubled, so that it is shown. Letters in `taken` (lower case) are left to others.
[[nodiscard]] QStringList withMnemonics(const QStringList& captions, const QString& taken = {});

/// The letter that opens a caption of withMnemonics(), in lower case; empty for one without.
[[nodiscard]] QString mnemonicOf(const QString& marked);

/// The caption as it is, its ampersands doubled.
[[nodiscard]] QString withoutMnemonic(const QString& caption);

} // namespace sonarith
