// SPDX-License-Identifier: GPL-3.0-or-later
// The lines of a ListBox as Qt's item model, without a copy of them. Lines added at the end are
// announced together, at the next event, but at most once in 30 ms: a search adds lines one by one
// for minutes.
#pragma once

#include <chrono>

#include <QAbstractListModel>
#include <QElapsedTimer>
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
    [[nodiscard]] std::chrono::milliseconds timeToAnnouncement() const;

    ListBox& list_;
    /// The number of announced rows: the first rows of the list, without a gap.
    int shown_;
    QTimer waiting_;
    QElapsedTimer sinceAnnouncement_; ///< of lines at the end; not valid before the first one
    Connection changed_;
};

} // namespace sonarith
