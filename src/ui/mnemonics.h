// SPDX-License-Identifier: GPL-3.0-or-later
// Chooses mnemonic letters for captions that define none. The mnemonic letter of a caption is
// underlined; the visible text does not change.
#pragma once

#include <QString>
#include <QStringList>

namespace sonarith {

/// Returns the captions with "&" before their mnemonic letters. Digits count as letters. No two
/// captions get the same letter; a caption whose letters are all in use gets none. First letters of
/// words are preferred. Ampersands in the captions are doubled, so that they are shown. Letters in
/// `taken` (lower case) are not used.
[[nodiscard]] QStringList withMnemonics(const QStringList& captions, const QString& taken = {});

/// The mnemonic letter of a caption from withMnemonics(), in lower case; empty if there is none.
[[nodiscard]] QString mnemonicOf(const QString& marked);

/// The caption with its ampersands doubled, so that they are shown and mark no mnemonic.
[[nodiscard]] QString withoutMnemonic(const QString& caption);

} // namespace sonarith
