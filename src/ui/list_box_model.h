// SPDX-License-Identifier: GPL-3.0-or-later
// The lines of a ListBox as Qt's item model, without a copy of them. Lines added at the end are
// announced together, up to 30 ms late: a search adds lines one by one for minutes.
#pragma once

#include <QAbstractListModel>
#include <QTimer>

#include "platform/controls/list_box.h"

namespace sonarith {

class ListBoxModel : public QAbstractListModel {
  public:
    /// `list` must outlive this object.
    explicit ListBoxModel(ListBox& list);

    /// Announces the pending lines.
    void showAll();

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

  private:
    void follow(const ListChange& change);
    void insert(int row);
    void remove(int row);

    ListBox& list_;
    /// The number of announced rows: the first rows of the list, without a gap.
    int shown_;
    QTimer waiting_;
    Connection changed_;
};

} // namespace sonarith
