// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/fixed_text.h"

#include "ui/mnemonics.h"

namespace sonarith {

QLabel* makeFixedText(const QString& text, QWidget* named, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setObjectName(QStringLiteral("text ") + text);
    label->setAccessibleName(text);
    label->setTextFormat(Qt::PlainText);
    if (named) {
        label->setBuddy(named);
        // In a label with a buddy, a single ampersand would mark a mnemonic letter and not be
        // shown.
        label->setText(withoutMnemonic(text));
    } else {
        label->setText(text);
    }
    return label;
}

QLabel* makeHeading(const QString& text, QWidget* parent) {
    QLabel* heading = makeFixedText(text, nullptr, parent);
    heading->setObjectName(QStringLiteral("heading ") + text);
    // The transparency makes the heading paler than the value below it, on light and dark palettes.
    QPalette quiet = heading->palette();
    QColor color = quiet.color(QPalette::WindowText);
    color.setAlphaF(0.65F);
    quiet.setColor(QPalette::WindowText, color);
    heading->setPalette(quiet);
    return heading;
}

} // namespace sonarith
