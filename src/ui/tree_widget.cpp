// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tree_widget.h"

#include <QApplication>
#include <QHeaderView>
#include <QMouseEvent>
#include <QScrollBar>
#include <QStyleHints>

#include "platform/qt/run_later.h"
#include "ui/popup_place.h"
#include "ui/tree_delegate.h"

namespace sonarith {
namespace {

/// The width and the height of a node's picture, in device-independent pixels.
constexpr int nodeIconSide = 18;
/// The indentation of each level, in device-independent pixels. It is small because the window is
/// narrow.
constexpr int levelIndentation = 16;

MouseButtons buttonsOf(Qt::MouseButtons buttons) {
    return {.left = buttons.testFlag(Qt::LeftButton), .right = buttons.testFlag(Qt::RightButton)};
}

} // namespace

TreeWidget::TreeWidget(TreeView& tree, TreeModel& model, QWidget* parent)
    : QTreeView(parent),
      tree_(tree),
      model_(model),
      delegate_(new TreeDelegate(tree_, model_, this)) {
    setModel(&model_);
    setItemDelegate(delegate_);
    setHeaderHidden(true);
    header()->setStretchLastSection(true);
    setUniformRowHeights(true);
    setTextElideMode(Qt::ElideMiddle);
    setIconSize(QSize(nodeIconSide, nodeIconSide));
    setIndentation(levelIndentation);
    setFrameShape(QFrame::NoFrame);
    setSelectionMode(QAbstractItemView::SingleSelection);
    // Items and not rows are selected, so that a screen reader selects exactly the node that it
    // names.
    setSelectionBehavior(QAbstractItemView::SelectItems);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setExpandsOnDoubleClick(false);
    setDragDropMode(QAbstractItemView::NoDragDrop);
    // The window handles dropped files.
    setAcceptDrops(false);
    viewport()->setAcceptDrops(false);

    revealTimer_.setSingleShot(true);
    connect(&revealTimer_, &QTimer::timeout, this, [this] {
        if (toReveal_.isValid()) {
            scrollTo(toReveal_);
        }
    });
    // One row every 60 ms is fast, but slow enough for the user to stop at the intended row.
    dragScrollTimer_.setInterval(60);
    connect(&dragScrollTimer_, &QTimer::timeout, this, [this] { scrollWhileDragging(); });
}

TreeWidget::~TreeWidget() {
    abandonPress();
    closeEditor(Focus::untouched);
}

// Notifications from the tree.

void TreeWidget::showSelection() {
    const QModelIndex index = model_.indexOf(tree_.selectedItem());
    showingSelection_ = true;
    if (index.isValid()) {
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    } else {
        selectionModel()->clearSelection();
    }
    showingSelection_ = false;
}

void TreeWidget::reveal(const NodeRef& node) {
    for (NodeRef above = node->parent(); above; above = above->parent()) {
        setExpanded(model_.indexOf(above), true);
    }
    toReveal_ = model_.indexOf(node);
    revealTimer_.start(0);
}

void TreeWidget::selectionChanged(const QItemSelection& selected,
                                  const QItemSelection& deselected) {
    QTreeView::selectionChanged(selected, deselected);
    if (showingSelection_ || selected.isEmpty()) {
        return;
    }
    // A screen reader has selected the node in this widget. This counts as a click on the node. The
    // click runs after this call has returned, because the click's handler may yield, that is, run
    // the event loop.
    const QPersistentModelIndex chosen = selected.indexes().value(0);
    runLater(*this, [this, chosen] {
        showSelection();
        if (chosen.isValid()) {
            clickByKey({.left = true}, chosen);
        }
    });
}

QItemSelectionModel::SelectionFlags TreeWidget::selectionCommand(const QModelIndex&,
                                                                 const QEvent*) const {
    // Keys move only the current row; the selection always shows the selected node of tree_.
    return QItemSelectionModel::NoUpdate;
}

// Positions.

NodeRef TreeWidget::nodeAtGlobal(const QPoint& global) const {
    const QPoint position = viewport()->mapFromGlobal(global);
    return viewport()->rect().contains(position) ? model_.nodeAt(indexAt(position)) : nullptr;
}

QModelIndex TreeWidget::branchAt(const QPoint& position) const {
    const QModelIndex index = indexAt(position);
    const bool leftOfPicture = position.x() < visualRect(index).left();
    return index.isValid() && leftOfPicture && model_.hasChildren(index) ? index : QModelIndex();
}

// Mouse.

void TreeWidget::mousePressEvent(QMouseEvent* event) {
    if (dragging() || takingUp_) {
        // A second press of the left button means that another window has received the release of
        // the first press.
        if (drag_ == Drag::byMouse && event->button() == Qt::LeftButton) {
            abandonPress();
        }
        return;
    }
    const QPoint position = event->position().toPoint();
    if (event->button() == Qt::LeftButton) {
        if (const QModelIndex branch = branchAt(position); branch.isValid()) {
            setExpanded(branch, !isExpanded(branch));
            return;
        }
    } else if (event->button() != Qt::RightButton) {
        return;
    }
    pressedMilliseconds_ = event->timestamp();
    press(buttonsOf(event->buttons()), model_.nodeAt(indexAt(position)),
          event->globalPosition().toPoint());
}

void TreeWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    const QPoint position = event->position().toPoint();
    if (dragging() || event->button() != Qt::LeftButton || branchAt(position).isValid()) {
        mousePressEvent(event);
        return;
    }
    doubleClick(model_.nodeAt(indexAt(position)));
}

void TreeWidget::press(MouseButtons buttons, const NodeRef& node, const QPoint& global) {
    pressedAt_ = global;
    movedFar_ = false;
    // The watch starts before the handler runs: the handler may yield, and the button may be
    // released during the yield.
    watchForRelease(true);
    const PopupPlace place(global);
    run(tree_.onMouseDown, buttons, node);
}

void TreeWidget::doubleClick(const NodeRef& node) {
    // The second press of a double click is not reported to the tree, but its release is.
    movedFar_ = false;
    watchForRelease(true);
    run(tree_.onDoubleClick);
    // The handler does nothing for a node of the top level. A double click expands or collapses
    // such a node instead.
    if (node && !node->removed() && !node->parent()) {
        const QModelIndex index = model_.indexOf(node);
        setExpanded(index, !isExpanded(index));
    }
}

void TreeWidget::mouseMoveEvent(QMouseEvent* event) {
    const QPoint global = event->globalPosition().toPoint();
    if (drag_ == Drag::byMouse) {
        dragOver(nodeAtGlobal(global));
        return;
    }
    // A small movement during a click does not start a drag.
    movedFar_ = movedFar_ || (global - pressedAt_).manhattanLength() >=
                                 QGuiApplication::styleHints()->startDragDistance();
    if (watchingRelease_ && movedFar_) {
        run(tree_.onMouseMove, buttonsOf(event->buttons()), nodeAtGlobal(global));
        if (drag_ == Drag::byMouse) {
            dragOver(nodeAtGlobal(global));
        }
    }
}

void TreeWidget::mouseReleaseEvent(QMouseEvent* event) {
    // eventFilter() handles the release, because any widget may receive it.
    event->accept();
}

void TreeWidget::watchForRelease(bool watch) {
    if (watch == watchingRelease_) {
        return;
    }
    watchingRelease_ = watch;
    if (watch) {
        // Filters the events of all windows, because the menu or the editor that a press has opened
        // may receive the release.
        qApp->installEventFilter(this);
    } else {
        qApp->removeEventFilter(this);
    }
}

bool TreeWidget::eventFilter(QObject* watched, QEvent* event) {
    // Handles the release when Qt sends it to the QWindow, because no widget receives the release
    // if the pressed widget has been destroyed.
    if (watchingRelease_ && event->type() == QEvent::MouseButtonRelease) {
        const auto& mouse = static_cast<const QMouseEvent&>(*event);
        if (!dragging() || mouse.button() == Qt::LeftButton) {
            release(mouse.button(), mouse.globalPosition().toPoint());
        }
        return false;
    }
    if (watchingRelease_ && event->type() == QEvent::MouseMove &&
        static_cast<const QMouseEvent&>(*event).buttons() == Qt::NoButton) {
        // No button is down: the press has ended, and its release was not received.
        abandonPress();
    }
    return QTreeView::eventFilter(watched, event);
}

void TreeWidget::release(Qt::MouseButton button, const QPoint& global) {
    watchForRelease(false);
    const NodeRef node = nodeAtGlobal(global);
    if (dragging()) {
        drop(node);
    } else {
        run(tree_.onMouseUp, buttonsOf(button), node);
    }
}

bool TreeWidget::event(QEvent* event) {
    switch (event->type()) {
    case QEvent::WindowBlocked: // by a dialog
    case QEvent::Hide:
        // Another window will receive the release.
        abandonPress();
        break;
    case QEvent::WindowDeactivate:
        // A press without a drag does not end here. The press may have opened a menu, and some
        // desktops treat a menu as another window.
        if (dragging()) {
            abandonPress();
        }
        break;
    case QEvent::FocusOut:
        if (drag_ == Drag::byKeys) {
            abandonPress();
        }
        break;
    case QEvent::ShortcutOverride:
        if (dragging()) {
            event->accept();
            return true;
        }
        break;
    case QEvent::KeyPress:
        // The key is handled here, before Qt uses the tab key to move the focus.
        if (dragging()) {
            keyWhileDragging(static_cast<QKeyEvent&>(*event));
            return true;
        }
        break;
    default:
        break;
    }
    return QTreeView::event(event);
}

/// Ends the press and a drag, without reporting a release or a drop.
void TreeWidget::abandonPress() {
    endDrag();
    watchForRelease(false);
}

// Keys.

void TreeWidget::keyPressEvent(QKeyEvent* event) {
    const QModelIndex index = currentIndex();
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (event->modifiers().testFlag(Qt::ControlModifier)) {
            doubleClickByKey(index);
        } else {
            clickByKey({.left = true}, index);
        }
        break;
    case Qt::Key_Space:
    case Qt::Key_F2:
        // Like a click by mouse, a click by key opens the editor if the node can be renamed.
        clickByKey({.left = true}, index);
        break;
    default:
        if (event->matches(QKeySequence::Cut)) {
            takeUpByKeys();
        } else if (event->key() == Qt::Key_Escape) {
            event->ignore();
        } else {
            QTreeView::keyPressEvent(event);
        }
    }
}

/// Has the effect of a mouse press in the middle of a row.
void TreeWidget::pressByKey(MouseButtons buttons, const QModelIndex& index) {
    scrollTo(index);
    const PopupPlace place(viewport()->mapToGlobal(visualRect(index).center()));
    run(tree_.onMouseDown, buttons, model_.nodeAt(index));
}

void TreeWidget::clickByKey(MouseButtons buttons, const QModelIndex& index) {
    const NodeRef node = model_.nodeAt(index);
    if (!node || dragging()) {
        return;
    }
    pressByKey(buttons, index);
    run(tree_.onMouseUp, buttons, node);
}

void TreeWidget::doubleClickByKey(const QModelIndex& index) {
    clickByKey({.left = true}, index);
    if (tree_.editedNode()) {
        tree_.cancelLabelEdit();
        closeEditor(Focus::toTree);
    }
    const NodeRef node = tree_.selectedItem();
    run(tree_.onDoubleClick);
    run(tree_.onMouseUp, MouseButtons{.left = true}, node);
}

void TreeWidget::contextMenuEvent(QContextMenuEvent* event) {
    // If the mouse caused this event, the press of its button has already opened the menu.
    if (event->reason() == QContextMenuEvent::Keyboard) {
        clickByKey({.right = true}, currentIndex());
    }
    event->accept();
}

} // namespace sonarith
