// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/folder_list_view.h"

#include <utility>

#include <QKeyEvent>
#include <QMouseEvent>

#include "platform/qt/text.h"
#include "ui/icons.h"

namespace sonarith {
namespace {

// Device-independent pixels.
constexpr int folderIconSide = 16;
constexpr int indentStep = 10;

} // namespace

FolderListModel::FolderListModel()
    : closed_(makeIcon(Symbol::group)), open_(makeIcon(Symbol::groupOpen)) {}

void FolderListModel::show(FolderRows rows) {
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
}

int FolderListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.rows.size());
}

QVariant FolderListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
        return toQString(rows_.rows[static_cast<std::size_t>(index.row())].name);
    case Qt::DecorationRole:
        return index.row() <= rows_.current ? open_ : closed_;
    default:
        return {};
    }
}

FolderListView::FolderListView(DirListBox& folders, QString label, QWidget* parent)
    : RowList(parent),
      folders_(folders),
      view_(folders, *this, {}, std::move(label), [this](Property which) {
          if (concerns(which, Property::path) && isVisible()) {
              read();
          }
      }) {
    setIconSize(QSize(folderIconSide, folderIconSide));
    setModel(&model_);
}

void FolderListView::read() {
    model_.show(folderRows(folders_.path(), folders_.subfolders()));
    const QModelIndex current = model_.index(model_.rows().current);
    setCurrentIndex(current);
    // With the current folder at the top, as many of its subfolders as fit are visible.
    scrollTo(current, PositionAtTop);
}

void FolderListView::enter(const QModelIndex& index) {
    if (!index.isValid()) {
        return;
    }
    const std::string path = model_.rows().rows[static_cast<std::size_t>(index.row())].path;
    const bool wasThere = path == folders_.path();
    // A change of the path calls read(). The path stays the same for the current folder and for a
    // folder that cannot be entered.
    if (!folders_.setPath(path).ok() || wasThere) {
        read();
    }
}

int FolderListView::indentOf(const QModelIndex& index) const {
    return indentStep * model_.rows().rows[static_cast<std::size_t>(index.row())].depth;
}

void FolderListView::showEvent(QShowEvent* event) {
    RowList::showEvent(event);
    read();
}

void FolderListView::mousePressEvent(QMouseEvent* event) {
    event->accept();
    if (event->button() == Qt::LeftButton) {
        setCurrentIndex(indexAt(event->position().toPoint()));
    }
}

void FolderListView::mouseDoubleClickEvent(QMouseEvent* event) {
    event->accept();
    if (event->button() == Qt::LeftButton) {
        enter(indexAt(event->position().toPoint()));
    }
}

void FolderListView::mouseMoveEvent(QMouseEvent* event) {
    event->accept();
}

void FolderListView::mouseReleaseEvent(QMouseEvent* event) {
    event->accept();
}

void FolderListView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        enter(currentIndex());
        return;
    case Qt::Key_F5:
        read();
        return;
    default:
        break;
    }
    if (const int row = rowFor(event->key(), currentIndex().row()); row >= 0) {
        const QModelIndex index = model_.index(row);
        setCurrentIndex(index);
        scrollTo(index);
    } else {
        event->ignore();
    }
}

} // namespace sonarith
