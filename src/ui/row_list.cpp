// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/row_list.h"

#include <algorithm>
#include <cstdlib>

#include <QAccessible>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QStyledItemDelegate>

// Several functions deliberately skip the direct base class QListView and call the implementation
// of QAbstractItemView, because QListView would update a layout of its own.
// NOLINTBEGIN(bugprone-parent-virtual-call)

namespace sonarith {
namespace {

/// Margin above and below a row's text and icon, in device-independent pixels.
constexpr int textMargin = 2;
/// No screen is wide enough to show a text of more characters than this. Longer texts are shortened
/// before they are painted, because it takes long to compute the glyphs of a very long text.
constexpr qsizetype mostPaintedCharacters = 2000;

/// The text that is painted: a single line, without the middle part of a very long text.
QString painted(QString text) {
    if (text.size() > mostPaintedCharacters) {
        text = text.left(mostPaintedCharacters / 2) + QChar(0x2026) +
               text.right(mostPaintedCharacters / 2);
    }
    for (QChar& character : text) {
        if (character.category() == QChar::Other_Control) {
            character = QLatin1Char(' ');
        }
    }
    return text;
}

class RowDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;
    [[nodiscard]] QString displayText(const QVariant& value, const QLocale&) const override {
        return painted(value.toString());
    }
};

} // namespace

RowList::RowList(QWidget* parent) : QListView(parent) {
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setDragDropMode(QAbstractItemView::NoDragDrop);
    setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideMiddle);
    setUniformItemSizes(true);
    setItemDelegate(new RowDelegate(this));
    // Qt must not scroll to each row that becomes the current one: subclasses decide when to
    // scroll.
    setAutoScroll(false);
}

void RowList::setModel(QAbstractItemModel* model) {
    QListView::setModel(model);
    // Runs after the base class has handled the same signal.
    connect(model, &QAbstractItemModel::rowsRemoved, this,
            [this](const QModelIndex&, int first, int last) { rowsWereRemoved(first, last); });
}

// Positions of rows.

int RowList::rowHeight() const {
    const int icon = iconSize().isValid() ? iconSize().height() : 0;
    return std::max(fontMetrics().height(), icon) + 2 * textMargin;
}

int RowList::rowCount() const {
    return model() ? model()->rowCount(rootIndex()) : 0;
}

int RowList::firstRow() const {
    return verticalScrollBar()->value();
}

int RowList::wholeRows() const {
    return std::max(1, viewport()->height() / rowHeight());
}

QRect RowList::rowRect(int row) const {
    return {0, (row - firstRow()) * rowHeight(), viewport()->width(), rowHeight()};
}

QRect RowList::visualRect(const QModelIndex& index) const {
    // Positions far outside the visible area would overflow an int.
    const int far = 2 * wholeRows() + 2;
    if (!index.isValid() || index.row() < firstRow() - far || index.row() > firstRow() + far) {
        return {};
    }
    return rowRect(index.row());
}

QModelIndex RowList::indexAt(const QPoint& point) const {
    if (!model() || !viewport()->rect().contains(point)) {
        return {};
    }
    return model()->index(firstRow() + point.y() / rowHeight(), 0, rootIndex());
}

int RowList::verticalOffset() const {
    return firstRow() * rowHeight();
}

bool RowList::isElided(const QModelIndex& index) const {
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = visualRect(index);
    option.rect.setLeft(indentOf(index));
    option.features = QStyleOptionViewItem::HasDisplay;
    const int margin = style()->pixelMetric(QStyle::PM_FocusFrameHMargin, &option, this) + 1;
    const int room =
        style()->subElementRect(QStyle::SE_ItemViewItemText, &option, this).width() - 2 * margin;
    return fontMetrics().horizontalAdvance(painted(index.data().toString())) > room;
}

bool RowList::isMarked(const QModelIndex&) const {
    return false;
}

int RowList::indentOf(const QModelIndex&) const {
    return 0;
}

int RowList::rowFor(int key, int from) const {
    const int last = rowCount() - 1;
    const auto held = [last](int row) {
        return std::clamp(row, std::min(0, last), last);
    };
    switch (key) {
    case Qt::Key_Up:
        return held(from - 1);
    case Qt::Key_Down:
        return held(from + 1);
    case Qt::Key_PageUp:
        return held(from - wholeRows());
    case Qt::Key_PageDown:
        return held(from + wholeRows());
    case Qt::Key_Home:
        return held(0);
    case Qt::Key_End:
        return held(last);
    default:
        return -1;
    }
}

QModelIndex RowList::moveCursor(CursorAction action, Qt::KeyboardModifiers) {
    const auto keyOf = [action] {
        switch (action) {
        case MoveUp:
        case MovePrevious:
            return Qt::Key_Up;
        case MoveDown:
        case MoveNext:
            return Qt::Key_Down;
        case MovePageUp:
            return Qt::Key_PageUp;
        case MovePageDown:
            return Qt::Key_PageDown;
        case MoveHome:
            return Qt::Key_Home;
        case MoveEnd:
            return Qt::Key_End;
        default:
            return Qt::Key_unknown;
        }
    };
    const int from = currentIndex().isValid() ? currentIndex().row() : -1;
    const int row = rowFor(keyOf(), from);
    return row >= 0 ? model()->index(row, 0, rootIndex()) : currentIndex();
}

QVariant RowList::inputMethodQuery(Qt::InputMethodQuery query) const {
    if (query == Qt::ImCursorRectangle) {
        const QRect row = visualRect(currentIndex());
        return row.translated(viewport()->pos());
    }
    return QListView::inputMethodQuery(query);
}

// Layout: all positions are computed from the height of a row.

void RowList::doItemsLayout() {
    QAbstractItemView::doItemsLayout();
}

void RowList::updateGeometries() {
    QScrollBar& bar = *verticalScrollBar();
    bar.setSingleStep(1);
    bar.setPageStep(wholeRows());
    bar.setRange(0, std::max(0, rowCount() - wholeRows()));
    QAbstractItemView::updateGeometries();
}

void RowList::resizeEvent(QResizeEvent* event) {
    QAbstractItemView::resizeEvent(event);
    updateGeometries();
}

void RowList::scrollContentsBy(int, int dy) {
    if (std::abs(dy) >= wholeRows()) {
        viewport()->update();
        return;
    }
    const int pixels = dy * rowHeight();
    scrollDirtyRegion(0, pixels);
    viewport()->scroll(0, pixels);
}

void RowList::scrollTo(const QModelIndex& index, ScrollHint hint) {
    if (!index.isValid()) {
        return;
    }
    QScrollBar& bar = *verticalScrollBar();
    const int row = index.row();
    const int lastInSight = firstRow() + wholeRows() - 1;
    if (hint == PositionAtCenter) {
        bar.setValue(row - wholeRows() / 2);
    } else if (hint == PositionAtTop || row < firstRow()) {
        bar.setValue(row);
    } else if (hint == PositionAtBottom || row > lastInSight) {
        bar.setValue(row - wholeRows() + 1);
    }
}

void RowList::rowsInserted(const QModelIndex& parent, int first, int last) {
    QAbstractItemView::rowsInserted(parent, first, last);
    const int formerFirst = firstRow();
    updateGeometries();
    if (first < formerFirst) {
        verticalScrollBar()->setValue(formerFirst + last - first + 1);
    }
    updateFrom(first);
}

void RowList::rowsAboutToBeRemoved(const QModelIndex& parent, int first, int last) {
    QAbstractItemView::rowsAboutToBeRemoved(parent, first, last);
    // The first visible row is stored before the removal, because the removal may scroll the list.
    firstBeforeRemoval_ = firstRow();
}

void RowList::rowsWereRemoved(int first, int last) {
    updateGeometries();
    if (first < firstBeforeRemoval_) {
        verticalScrollBar()->setValue(std::max(first, firstBeforeRemoval_ - (last - first + 1)));
    }
    updateFrom(first);
}

/// Repaints a row and the rows below it, as far as they are visible.
void RowList::updateFrom(int row) {
    if (row <= firstRow() + wholeRows()) {
        const int top = std::max(0, row - firstRow()) * rowHeight();
        viewport()->update(viewport()->rect().adjusted(0, top, 0, 0));
    }
}

void RowList::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                          const QList<int>& roles) {
    QAbstractItemView::dataChanged(topLeft, bottomRight, roles);
}

// Selection. QListView would report wrong row numbers to screen readers, because it computes these
// numbers from its own layout, which is not used here.

void RowList::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    if (QAccessible::isActive() && current.isValid() && hasFocus()) {
        QAccessibleEvent event(this, QAccessible::Focus);
        event.setChild(current.row());
        QAccessible::updateAccessibility(&event);
    }
    QAbstractItemView::currentChanged(current, previous);
}

void RowList::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    if (QAccessible::isActive() && !selected.isEmpty()) {
        QAccessibleEvent event(this, QAccessible::Selection);
        event.setChild(selected.first().top());
        QAccessible::updateAccessibility(&event);
    }
    QAbstractItemView::selectionChanged(selected, deselected);
}

void RowList::setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) {
    const QRect place = rect.normalized();
    const QModelIndex index = indexAt(place.center());
    selectionModel()->select(index.isValid() ? QItemSelection(index, index) : QItemSelection(),
                             command);
}

QRegion RowList::visualRegionForSelection(const QItemSelection& selection) const {
    QRegion region;
    for (const QItemSelectionRange& range : selection) {
        const int top = std::max(range.top(), firstRow());
        const int bottom = std::min(range.bottom(), firstRow() + wholeRows());
        for (int row = top; row <= bottom; ++row) {
            region += rowRect(row);
        }
    }
    return region & viewport()->rect();
}

void RowList::paintEvent(QPaintEvent* event) {
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    const QStyle::State state = option.state;
    const QRect dirty = event->rect();
    const int first = firstRow() + dirty.top() / rowHeight();
    const int last = std::min(rowCount() - 1, firstRow() + dirty.bottom() / rowHeight());
    QPainter painter(viewport());
    for (int row = first; row <= last; ++row) {
        option.rect = rowRect(row);
        if (!event->region().intersects(option.rect)) {
            continue;
        }
        const QModelIndex index = model()->index(row, 0, rootIndex());
        option.rect.setLeft(indentOf(index));
        option.state = state;
        option.state.setFlag(QStyle::State_Selected,
                             selectionModel()->isSelected(index) || isMarked(index));
        option.state.setFlag(QStyle::State_HasFocus, hasFocus() && index == currentIndex());
        itemDelegate()->paint(&painter, option, index);
    }
}

} // namespace sonarith

// NOLINTEND(bugprone-parent-virtual-call)
