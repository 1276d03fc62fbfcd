// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/text_box_view.h"

#include <algorithm>
#include <limits>
#include <string>
#include <utility>

#include <QMouseEvent>

#include "platform/qt/text.h"
#include "ui/mouse.h"
#include "ui/popup_place.h"

namespace sonarith {

QFont withPoints(QFont font, int points) {
    if (points > 0) {
        font.setPointSize(points);
    } else {
        font.setResolveMask(font.resolveMask() & ~static_cast<uint>(QFont::SizeResolved));
    }
    return font;
}

TextBoxView::TextBoxView(TextBox& box, QString label, QWidget* parent)
    : QLineEdit(parent),
      box_(box),
      view_(box, *this, {}, std::move(label), [this](Property which) { apply(which); }) {
    // Qt does not emit textEdited() for a text that is set through the accessibility tree.
    connect(this, &QLineEdit::textChanged, this, [this](const QString& text) { take(text); });
}

/// Takes a text from the user: typed, pasted, undone, or set through the accessibility tree.
void TextBoxView::take(const QString& text) {
    const std::string entered = toText(text);
    if (entered == box_.text()) {
        return; // the signal comes from showText(), which shows the control's text
    }
    if (!box_.locked() && isEnabled()) {
        box_.setText(entered);
    }
    // Shows the control's text again, which removes text that the control has not accepted.
    showText();
    showTypingLimit();
}

void TextBoxView::apply(Property which) {
    if (concerns(which, Property::text)) {
        showText();
    }
    if (concerns(which, Property::typingLimit)) {
        showTypingLimit();
    }
    if (concerns(which, Property::locked)) {
        setReadOnly(box_.locked());
    }
    if (concerns(which, Property::fontSize)) {
        setFont(withPoints(font(), box_.fontSize()));
    }
}

void TextBoxView::showText() {
    const QString shown = toQString(box_.text());
    if (shown == text()) {
        return;
    }
    // The caret keeps its position, except that a caret at the end stays at the end.
    const bool atEnd = cursorPosition() == text().size();
    const int caret = cursorPosition();
    if (shown.size() > maxLength()) {
        // Code may set a longer text than the user can type.
        setMaxLength(static_cast<int>(shown.size()));
    }
    // QLineEdit::setText() also clears the undo history, so that undo cannot restore a text that
    // code has replaced.
    setText(shown);
    setCursorPosition(atEnd ? static_cast<int>(shown.size())
                            : std::min(caret, static_cast<int>(shown.size())));
    showTypingLimit();
}

void TextBoxView::showTypingLimit() {
    const int limit = box_.typingLimit() > 0 ? box_.typingLimit() : std::numeric_limits<int>::max();
    const int most = std::max(limit, static_cast<int>(text().size()));
    if (most != maxLength()) {
        // setMaxLength() sets the text again, which moves the caret.
        const int caret = cursorPosition();
        setMaxLength(most);
        setCursorPosition(caret);
    }
}

void TextBoxView::keyPressEvent(QKeyEvent* event) {
    run(box_.onKeyDown);
    // The handler may have disabled the box.
    if (isEnabled()) {
        QLineEdit::keyPressEvent(event);
    }
}

void TextBoxView::mousePressEvent(QMouseEvent* event) {
    // A press on a read-only box with a press handler drags the window, so the press must not
    // select text.
    if (!box_.locked() || !box_.onMouseDown) {
        QLineEdit::mousePressEvent(event);
    }
    const PopupPlace place(event->globalPosition().toPoint());
    run(box_.onMouseDown, pressed(*event));
}

} // namespace sonarith
