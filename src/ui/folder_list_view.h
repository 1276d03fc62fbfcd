// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a DirListBox as a list of the folders from the drive to the current folder, followed by the
// subfolders of the current folder. A double click or the enter key makes a folder the current one;
// a click or a cursor key only selects a row. Folders are read when the list is shown, when the
// current folder changes, and when the user enters a folder or presses F5.
#pragma once

#include <QAbstractListModel>

#include "platform/controls/folder_controls.h"
#include "ui/control_view.h"
#include "ui/folder_rows.h"
#include "ui/row_list.h"

namespace sonarith {

class FolderListModel : public QAbstractListModel {
  public:
    FolderListModel();

    void show(FolderRows rows);
    [[nodiscard]] const FolderRows& rows() const { return rows_; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

  private:
    FolderRows rows_;
    QVariant closed_;
    QVariant open_;
};

class FolderListView : public RowList {
  public:
    FolderListView(DirListBox& folders, QString label, QWidget* parent);

  protected:
    void showEvent(QShowEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    [[nodiscard]] int indentOf(const QModelIndex& index) const override;

  private:
    void read();
    void enter(const QModelIndex& index);

    DirListBox& folders_;
    FolderListModel model_;
    ControlView view_;
};

} // namespace sonarith
