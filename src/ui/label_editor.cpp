// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/label_editor.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>

namespace sonarith {

LabelEditor::LabelEditor(const QString& text, QWidget* parent) : QLineEdit(text, parent) {
    setObjectName(QStringLiteral("labelEditor"));
    setAccessibleName(tr("New name"));
    setAutoFillBackground(true);
    selectAll();
}

void LabelEditor::finish() {
    if (!left_) {
        left_ = true;
        onFinished(text());
    }
}

void LabelEditor::cancel() {
    if (!left_) {
        left_ = true;
        onCancelled();
    }
}

bool LabelEditor::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        // The editor handles the Escape key and the Return key, even if they are shortcuts of the
        // window.
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Escape || key->key() == Qt::Key_Return) {
            event->accept();
            return true;
        }
    }
    return QLineEdit::event(event);
}

void LabelEditor::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        finish();
        break;
    case Qt::Key_Escape:
        cancel();
        break;
    default:
        QLineEdit::keyPressEvent(event);
        // A key that the editor does not use (such as the Up key) must have no effect. So the key
        // is not passed to the parent widget.
        event->accept();
    }
}

void LabelEditor::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    switch (event->reason()) {
    case Qt::MouseFocusReason:
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
        finish();
        break;
    case Qt::PopupFocusReason:
    case Qt::MenuBarFocusReason:
        // The edit continues, since the editor gets the focus back when the menu closes.
        break;
    default:
        cancel();
    }
}

void LabelEditor::mousePressEvent(QMouseEvent* event) {
    if (!handlesPress(*event)) {
        QLineEdit::mousePressEvent(event);
    }
}

void LabelEditor::mouseDoubleClickEvent(QMouseEvent* event) {
    if (!handlesPress(*event)) {
        QLineEdit::mouseDoubleClickEvent(event);
    }
}

} // namespace sonarith
