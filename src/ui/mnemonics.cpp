// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/mnemonics.h"

namespace sonarith {
namespace {

/// The index of the letter or digit that becomes the mnemonic of the caption; -1 if none is free.
qsizetype findFreeLetter(const QString& caption, const QString& taken) {
    const auto isFree = [&](qsizetype i) {
        return caption[i].isLetterOrNumber() && !taken.contains(caption[i].toLower());
    };
    for (qsizetype i = 0; i < caption.size(); ++i) {
        const bool beginsWord = i == 0 || caption[i - 1].isSpace();
        if (beginsWord && isFree(i)) {
            return i;
        }
    }
    for (qsizetype i = 0; i < caption.size(); ++i) {
        if (isFree(i)) {
            return i;
        }
    }
    return -1;
}

} // namespace

QStringList withMnemonics(const QStringList& captions, const QString& taken) {
    QString used = taken;
    QStringList marked;
    for (const QString& caption : captions) {
        const qsizetype letter = findFreeLetter(caption, used);
        if (letter < 0) {
            marked += withoutMnemonic(caption);
            continue;
        }
        used += caption[letter].toLower();
        marked += withoutMnemonic(caption.left(letter)) + QLatin1Char('&') + caption[letter] +
                  withoutMnemonic(caption.mid(letter + 1));
    }
    return marked;
}

QString mnemonicOf(const QString& marked) {
    for (qsizetype at = marked.indexOf(QLatin1Char('&')); at >= 0 && at + 1 < marked.size();
         at = marked.indexOf(QLatin1Char('&'), at + 2)) {
        // A doubled ampersand is shown as an ampersand and marks no mnemonic.
        if (marked[at + 1] != QLatin1Char('&')) {
            return marked.mid(at + 1, 1).toLower();
        }
    }
    return {};
}

QString withoutMnemonic(const QString& caption) {
    return QString(caption).replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace sonarith
