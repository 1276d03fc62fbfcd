// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/list_box_view.h"

#include <algorithm>

#include <QClipboard>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QToolTip>

#include "platform/qt/run_later.h"
#include "platform/qt/text.h"
#include "ui/mouse.h"
#include "ui/popup_place.h"
#include "ui/tool_tip.h"

namespace sonarith {
namespace {

/// A tool tip with more characters would cover the whole screen.
constexpr qsizetype longestTip = 4000;

} // namespace

ListBoxView::ListBoxView(ListBox& list, QString label, LineTips tips, QWidget* parent,
                         Gathered gathered)
    : RowList(parent),
      list_(list),
      tips_(tips),
      model_(list, gathered),
      view_(list, *this, {}, std::move(label), [this](Property which) {
          if (concerns(which, Property::listIndex)) {
              showCurrent();
              scrollTo(model_.index(model_.rowOf(list_.listIndex())));
          }
      }) {
    setModel(&model_);
    showCurrent();
    model_.onShown = [this] {
        showCurrent();
    };
    // When the current line is removed, the item view chooses another current row, which must not
    // stay selected.
    linesChanged_ = list_.listChanged.connect([this](const ListChange& change) {
        if (change.kind != ListChange::Kind::edited) {
            showCurrent();
        }
    });
}

void ListBoxView::showCurrent() {
    if (!selectionModel()) {
        return;
    }
    if (list_.listIndex() >= 0 && model_.rowOf(list_.listIndex()) < 0) {
        model_.showAll();
    }
    const QModelIndex wanted = model_.index(model_.rowOf(list_.listIndex()));
    showingCurrent_ = true;
    if (!wanted.isValid()) {
        // Only the selection is cleared: after the removal of a line, the focus stays at a
        // neighbouring row.
        selectionModel()->clearSelection();
    } else if (wanted != currentIndex() || !selectionModel()->isSelected(wanted)) {
        selectionModel()->setCurrentIndex(wanted, QItemSelectionModel::ClearAndSelect);
    }
    showingCurrent_ = false;
}

QItemSelectionModel::SelectionFlags ListBoxView::selectionCommand(const QModelIndex&,
                                                                  const QEvent*) const {
    // Qt must not select a row itself: only the ListBox sets the current line.
    return QItemSelectionModel::NoUpdate;
}

void ListBoxView::selectionChanged(const QItemSelection& selected,
                                   const QItemSelection& deselected) {
    RowList::selectionChanged(selected, deselected);
    if (showingCurrent_ || selected.isEmpty()) {
        return;
    }
    // A screen reader has selected the row. This counts as a click on the line. The click runs
    // after this call has returned, because its handler may yield.
    const QPersistentModelIndex chosen = selected.indexes().value(0);
    runLater(*this, [this, chosen] {
        showCurrent();
        if (chosen.isValid()) {
            list_.choose(model_.lineOf(chosen.row()));
        }
    });
}

bool ListBoxView::isMarked(const QModelIndex& index) const {
    return list_.selected(model_.lineOf(index.row()));
}

// Mouse.

void ListBoxView::mousePressEvent(QMouseEvent* event) {
    event->accept();
    const QModelIndex index = indexAt(event->position().toPoint());
    const MouseButtons buttons = sonarith::pressed(*event);
    const QPoint global = event->globalPosition().toPoint();
    if (buttons.left && index.isValid()) {
        list_.choose(model_.lineOf(index.row()));
    }
    press(buttons, global);
}

void ListBoxView::press(MouseButtons buttons, const QPoint& global) {
    const PopupPlace place(global);
    run(list_.onMouseDown, buttons);
}

void ListBoxView::mouseDoubleClickEvent(QMouseEvent* event) {
    event->accept();
    if (event->button() != Qt::LeftButton) {
        mousePressEvent(event);
    }
}

void ListBoxView::mouseMoveEvent(QMouseEvent* event) {
    // A drag over the lines chooses no line: each choice may start a long action.
    event->accept();
}

void ListBoxView::mouseReleaseEvent(QMouseEvent* event) {
    event->accept();
}

void ListBoxView::contextMenuEvent(QContextMenuEvent* event) {
    event->accept();
    // If the mouse caused this event, the press of its button has already opened the menu.
    if (event->reason() == QContextMenuEvent::Keyboard) {
        const QModelIndex current = currentIndex();
        scrollTo(current);
        const QPoint place = current.isValid() ? visualRect(current).center() : QPoint();
        press({.right = true}, viewport()->mapToGlobal(place));
    }
}

// Keys.

void ListBoxView::keyPressEvent(QKeyEvent* event) {
    event->accept();
    model_.showAll(); // from here on, row and line numbers are equal
    // Without a current line, the keys Up, Down, Page Up, Page Down and Space choose the row with
    // the focus, or the first row if no row has the focus.
    const int focused = std::max(0, currentIndex().row());
    if (const int row = rowFor(event->key(), list_.listIndex()); row >= 0) {
        const bool endToEnd = event->key() == Qt::Key_Home || event->key() == Qt::Key_End;
        chooseByKey(list_.listIndex() < 0 && !endToEnd ? focused : row);
    } else if (event->key() == Qt::Key_Space) {
        list_.choose(list_.listIndex() < 0 ? focused : list_.listIndex());
    } else if (event->matches(QKeySequence::Copy)) {
        QGuiApplication::clipboard()->setText(toQString(list_.text()));
    } else {
        event->ignore();
    }
}

void ListBoxView::chooseByKey(int row) {
    if (row != list_.listIndex()) {
        list_.choose(row);
    }
}

// Tool tips.

bool ListBoxView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        showTip(static_cast<const QHelpEvent&>(*event));
        return true;
    }
    return RowList::viewportEvent(event);
}

void ListBoxView::showTip(const QHelpEvent& event) {
    const QModelIndex index = indexAt(event.pos());
    if (tips_ == LineTips::whenCut && index.isValid() && isElided(index)) {
        const QString line = index.data().toString().left(longestTip);
        QToolTip::showText(event.globalPos(), plainToolTip(line), viewport(), visualRect(index));
    } else {
        QToolTip::showText(event.globalPos(), toolTip(), viewport());
    }
}

} // namespace sonarith
