// SPDX-License-Identifier: GPL-3.0-or-later
// The lines of a ListBox as Qt's item model. It holds no copy of them. Lines that are added at the
// end are announced together, up to 30 ms late: a search adds them one by one for minutes.
#pragma once

#include <QAbstractListModel>
#include <QTimer>

#include "platform/controls/list_box.h"

namespace sonarith {

class ListBoxModel : public QAbstractListModel {
  public:
    /// `list` outlives this.
    explicit ListBoxModel(ListBox& list);

    /// Announces the lines that wait for it.
    void showAll();

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

  private:
    void follow(const ListChange& change);
    void insert(int row);
    void remove(int row);

    ListBox& list_;
    /// The rows that were announced: the first ones of the list, without a gap.
    int shown_;
    QTimer waiting_;
    Connection changed_;
};

} // namespace sonarith
