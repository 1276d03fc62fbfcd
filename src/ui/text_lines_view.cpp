// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/text_lines_view.h"

#include <QMouseEvent>
#include <QScrollBar>

#include "platform/qt/text.h"
#include "ui/mouse.h"
#include "ui/text_box_view.h"

namespace sonarith {

TextLinesView::TextLinesView(TextBox& box, QString label, QWidget* parent)
    : QPlainTextEdit(parent),
      box_(box),
      view_(box, *this, {}, std::move(label), [this](Property which) { apply(which); }) {
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setTabChangesFocus(true);
    setLineWrapMode(QPlainTextEdit::NoWrap);
    // With these flags, the user can read and select the text by keyboard, too.
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

void TextLinesView::apply(Property which) {
    if (concerns(which, Property::text)) {
        showText();
    }
    if (concerns(which, Property::fontSize)) {
        setFont(withPoints(font(), box_.fontSize()));
    }
}

void TextLinesView::showText() {
    const QString lines =
        toQString(box_.text()).replace(QLatin1String("\r\n"), QLatin1String("\n"));
    if (lines == toPlainText()) {
        return;
    }
    // The text may change while the user reads it, so the scroll position is kept.
    const int inSight = verticalScrollBar()->value();
    setPlainText(lines);
    verticalScrollBar()->setValue(inSight);
}

void TextLinesView::keyPressEvent(QKeyEvent* event) {
    run(box_.onKeyDown);
    QPlainTextEdit::keyPressEvent(event);
}

void TextLinesView::mousePressEvent(QMouseEvent* event) {
    QPlainTextEdit::mousePressEvent(event);
    run(box_.onMouseDown, pressed(*event));
}

} // namespace sonarith
