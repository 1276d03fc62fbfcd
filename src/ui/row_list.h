// SPDX-License-Identifier: GPL-3.0-or-later
// A list whose rows all have the same height. So adding rows, scrolling and painting take no longer
// in a longer list. RowList derives from QListView to inherit its support of screen readers.
// RowList does not use the layout of QListView, which visits every row again when a row is added.
// Subclasses define the meaning of the rows.
#pragma once

#include <QListView>

namespace sonarith {

class RowList : public QListView {
  public:
    explicit RowList(QWidget* parent);

    void setModel(QAbstractItemModel* model) override;
    [[nodiscard]] QRect visualRect(const QModelIndex& index) const override;
    [[nodiscard]] QModelIndex indexAt(const QPoint& point) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    void doItemsLayout() override;
    /// Returns the rectangle of the current row as the cursor rectangle. For the menu key, Qt uses
    /// its centre as the position of the QContextMenuEvent.
    [[nodiscard]] QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

  protected:
    /// In device-independent pixels.
    [[nodiscard]] int rowHeight() const;
    [[nodiscard]] int rowCount() const;
    /// Whether a row is painted as selected even if it is not selected.
    [[nodiscard]] virtual bool isMarked(const QModelIndex& index) const;
    /// Indentation of a row, in device-independent pixels.
    [[nodiscard]] virtual int indentOf(const QModelIndex& index) const;
    /// Whether the text of the row is shown shortened.
    [[nodiscard]] bool isElided(const QModelIndex& index) const;
    /// The row of the list to which a cursor key moves from row `from`. Returns -1 for an empty
    /// list and for other keys.
    [[nodiscard]] int rowFor(int key, int from) const;

    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void updateGeometries() override;
    void rowsInserted(const QModelIndex& parent, int first, int last) override;
    void rowsAboutToBeRemoved(const QModelIndex& parent, int first, int last) override;
    void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                     const QList<int>& roles) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void selectionChanged(const QItemSelection& selected,
                          const QItemSelection& deselected) override;
    [[nodiscard]] int horizontalOffset() const override { return 0; }
    [[nodiscard]] int verticalOffset() const override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
    [[nodiscard]] QRegion visualRegionForSelection(const QItemSelection& selection) const override;

  private:
    [[nodiscard]] QRect rowRect(int row) const;
    [[nodiscard]] int firstRow() const;
    [[nodiscard]] int wholeRows() const;
    void rowsWereRemoved(int first, int last);
    void updateFrom(int row);

    int firstBeforeRemoval_ = 0;
};

} // namespace sonarith
