// SPDX-License-Identifier: GPL-3.0-or-later
// Implements the part of the work tree's widget that drags a node, by mouse and by keys. It tracks
// the pointer itself and does not use the desktop's drag and drop, because that would prevent the
// tree's handlers from running while the pointer moves.
#include <utility>
#include <vector>

#include <QGuiApplication>
#include <QKeyEvent>
#include <QScrollBar>

#include "ui/icons.h"
#include "ui/tree_delegate.h"
#include "ui/tree_widget.h"
#include "worktree/node_level.h"

namespace sonarith {
namespace {

/// The width and height of the picture that the pointer shows during a drag by mouse, in
/// device-independent pixels.
constexpr int dragIconSide = 32;

bool movesTheCurrentRow(int key) {
    switch (key) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        return true;
    default:
        return false;
    }
}

} // namespace

void TreeWidget::startDrag() {
    if (dragging() || !(watchingRelease_ || takingUp_)) {
        return;
    }
    drag_ = takingUp_ ? Drag::byKeys : Drag::byMouse;
    if (tree_.editedNode()) {
        tree_.cancelLabelEdit();
        closeEditor(Focus::toTree);
    }
    if (drag_ == Drag::byMouse) {
        const QPixmap picture =
            makeIcon(Symbol::item).pixmap(QSize(dragIconSide, dragIconSide), devicePixelRatioF());
        QGuiApplication::setOverrideCursor(QCursor(picture, 0, 0));
        dragScrollTimer_.start();
    } else {
        // During a drag by keys the pointer may be anywhere, so the row itself shows that it was
        // picked up.
        delegate_->setCarried(tree_.selectedItem());
        viewport()->update();
    }
}

void TreeWidget::dragOver(const NodeRef& node) {
    const std::optional<NodeRef> former = std::exchange(over_, node);
    // A pointer that moves within one row causes repeated events over the same node. Over a group,
    // the handler needs up to two events until its state is stable. Over a collection or over no
    // node, each reported event would move the dragged node again, back or forth. So only the first
    // of these events is reported.
    if (former == over_ && NodeLevel(node) < groupLevel) {
        return;
    }
    run(tree_.onDragOver, node);
}

void TreeWidget::drop(const NodeRef& node) {
    endDrag();
    run(tree_.onDragDrop, node);
}

void TreeWidget::endDrag() {
    over_.reset();
    switch (std::exchange(drag_, Drag::none)) {
    case Drag::none:
        break;
    case Drag::byMouse:
        dragScrollTimer_.stop();
        QGuiApplication::restoreOverrideCursor();
        break;
    case Drag::byKeys:
        delegate_->setCarried(nullptr);
        viewport()->update();
        break;
    }
}

void TreeWidget::scrollWhileDragging() {
    // Scrolls if the pointer is above or below the viewport, or at most a row's height inside its
    // upper or lower edge.
    const int y = viewport()->mapFromGlobal(QCursor::pos()).y();
    const int edge = sizeHintForRow(0);
    QScrollBar& bar = *verticalScrollBar();
    const int before = bar.value();
    if (y < edge) {
        bar.triggerAction(QAbstractSlider::SliderSingleStepSub);
    } else if (y > viewport()->height() - edge) {
        bar.triggerAction(QAbstractSlider::SliderSingleStepAdd);
    }
    if (bar.value() != before) {
        dragOver(nodeAtGlobal(QCursor::pos()));
    }
}

void TreeWidget::takeUpByKeys() {
    const QModelIndex index = currentIndex();
    const NodeRef node = model_.nodeAt(index);
    if (!node || watchingRelease_ || takingUp_) {
        return;
    }
    constexpr MouseButtons left{.left = true};
    takingUp_ = true;
    pressByKey(left, index);
    run(tree_.onMouseMove, left, node);
    takingUp_ = false;
    if (!dragging()) {
        // This node cannot be dragged, so the key has the effect of a click.
        run(tree_.onMouseUp, left, node);
    }
}

void TreeWidget::keyWhileDragging(QKeyEvent& event) {
    const bool drops = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter ||
                       event.matches(QKeySequence::Paste);
    if (event.key() == Qt::Key_Escape) {
        abandonPress();
    } else if (drag_ == Drag::byKeys && drops) {
        dropByKeys();
    } else if (drag_ == Drag::byKeys && movesTheCurrentRow(event.key())) {
        QTreeView::keyPressEvent(&event);
    }
    event.accept();
}

void TreeWidget::dropByKeys() {
    const NodeRef target = model_.nodeAt(currentIndex());
    // Reports the dragged node before the target, as if a pointer left the dragged node's row.
    // Otherwise the handler would ignore the target if the previous drag has ended there. A group
    // is reported twice, because the handler's state may be stable only after the second event.
    std::vector<NodeRef> way{delegate_->carried(), target};
    if (NodeLevel(target) == groupLevel) {
        way.push_back(target);
    }
    for (const NodeRef& node : way) {
        // The handlers yield, and the drag may end during a yield.
        if (dragging()) {
            dragOver(node);
        }
    }
    if (dragging()) {
        drop(target);
    }
}

} // namespace sonarith
