// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a ListBox with its lines, the current line and the marked lines. A left press or a cursor
// key chooses a line; the second press of a double click does not choose the line again.
#pragma once

#include "platform/controls/list_box.h"
#include "ui/control_view.h"
#include "ui/list_box_model.h"
#include "ui/row_list.h"

namespace sonarith {

class ListBoxView : public RowList {
  public:
    /// Whether a tool tip shows the whole text of a shortened line.
    enum class LineTips { none, whenCut };

    using Gathered = ListBoxModel::Gathered;

    /// Lines that are too long are shortened in the middle, because most lines are paths;
    /// setTextElideMode() can change that.
    ListBoxView(ListBox& list, QString label, LineTips tips, QWidget* parent,
                Gathered gathered = Gathered::additions);

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void selectionChanged(const QItemSelection& selected,
                          const QItemSelection& deselected) override;
    [[nodiscard]] QItemSelectionModel::SelectionFlags
    selectionCommand(const QModelIndex& index, const QEvent* event) const override;
    [[nodiscard]] bool isMarked(const QModelIndex& index) const override;

  private:
    void press(MouseButtons buttons, const QPoint& global);
    void chooseByKey(int row);
    void showCurrent();
    void showTip(const QHelpEvent& event);

    ListBox& list_;
    LineTips tips_;
    ListBoxModel model_;
    bool showingCurrent_ = false;
    Connection linesChanged_;
    ControlView view_;
};

} // namespace sonarith
