// SPDX-License-Identifier: GPL-3.0-or-later
// Implements the part of the work tree's widget that opens, places and closes the editor over a
// label.
#include <utility>

#include <QGuiApplication>
#include <QMouseEvent>
#include <QStyleHints>

#include "platform/qt/text.h"
#include "ui/label_editor.h"
#include "ui/tree_widget.h"

namespace sonarith {

QRect TreeWidget::labelRect(const QModelIndex& index) const {
    // The style adds a margin at each side of the picture.
    const int margin = style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1;
    return visualRect(index).adjusted(iconSize().width() + 2 * margin, 0, 0, 0);
}

void TreeWidget::openEditor(const NodeRef& node) {
    closeEditor(Focus::untouched);
    if (!isVisible()) {
        tree_.cancelLabelEdit();
        return;
    }
    reveal(node);
    const QModelIndex index = model_.indexOf(node);
    scrollTo(index);
    editedIndex_ = index;
    // The editor is a sibling of the tree and not its child, because assistive programs detect only
    // nodes as children of a tree.
    editor_ = new LabelEditor(toQString(node->text()), parentWidget());
    editor_->onFinished = [this](const QString& text) {
        finishEdit(text);
    };
    editor_->onCancelled = [this] {
        tree_.cancelLabelEdit();
        // Hiding a focused editor would move the focus to the next control, a button.
        closeEditor(Focus::toTree);
    };
    editor_->handlesPress = [this](QMouseEvent& event) {
        return takesPressFromEditor(event);
    };
    updateEditorGeometries();
    editor_->show();
    editor_->setFocus(Qt::OtherFocusReason);
}

void TreeWidget::finishEdit(const QString& text) {
    const NodeRef& edited = tree_.editedNode();
    const bool changed = edited && toText(text) != edited->text();
    // The editor is closed first: the handler that finishLabelEdit() runs may open it again.
    closeEditor(Focus::toTree);
    if (changed) {
        tree_.finishLabelEdit(toText(text));
    } else {
        tree_.cancelLabelEdit();
    }
}

void TreeWidget::closeEditor(Focus focus) {
    if (!editor_) {
        return;
    }
    LabelEditor* closing = std::exchange(editor_, nullptr);
    editedIndex_ = QModelIndex();
    // The edit has ended, so the loss of focus that follows from hiding the editor must not be
    // reported.
    closing->onFinished = [](const QString&) {
    };
    closing->onCancelled = [] {
    };
    if (focus == Focus::toTree && closing->hasFocus()) {
        setFocus(Qt::OtherFocusReason);
    }
    closing->hide();
    // The editor is deleted later, since one of its event handlers may be running.
    closing->deleteLater();
}

void TreeWidget::dropEditorWithoutNode() {
    if (editor_ && !tree_.editedNode()) {
        closeEditor(Focus::toTree);
    }
}

void TreeWidget::updateEditorGeometries() {
    QTreeView::updateEditorGeometries();
    if (editor_ && editedIndex_.isValid()) {
        // The editor gets an empty rectangle when its node is scrolled out of view, so that it
        // covers no other widgets.
        const QRect seen = labelRect(editedIndex_) & viewport()->rect();
        editor_->setGeometry(QRect(viewport()->mapTo(parentWidget(), seen.topLeft()), seen.size()));
    }
}

void TreeWidget::scrollContentsBy(int dx, int dy) {
    QTreeView::scrollContentsBy(dx, dy);
    updateEditorGeometries();
}

void TreeWidget::moveEvent(QMoveEvent* event) {
    QTreeView::moveEvent(event);
    updateEditorGeometries();
}

bool TreeWidget::takesPressFromEditor(QMouseEvent& event) {
    const QStyleHints& hints = *QGuiApplication::styleHints();
    const QPoint distance = event.globalPosition().toPoint() - pressedAt_;
    const bool second = event.button() == Qt::LeftButton && pressedMilliseconds_ != 0 &&
                        event.timestamp() - pressedMilliseconds_ <=
                            static_cast<quint64>(hints.mouseDoubleClickInterval()) &&
                        distance.manhattanLength() <= hints.mouseDoubleClickDistance();
    if (!second) {
        return false;
    }
    // The first press of this double click has opened the editor; the second press is meant for the
    // tree.
    const NodeRef node = tree_.editedNode();
    tree_.cancelLabelEdit();
    closeEditor(Focus::toTree);
    doubleClick(node);
    return true;
}

} // namespace sonarith
