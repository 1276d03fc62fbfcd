// SPDX-License-Identifier: GPL-3.0-or-later
// The lines of a ListBox as Qt's item model, without a copy of them. A search changes its lists
// line by line for minutes: such changes are announced together, since each announcement lays out
// and paints the list, and is sent to screen readers.
#pragma once

#include <chrono>
#include <functional>

#include <QAbstractListModel>
#include <QElapsedTimer>
#include <QTimer>

#include "platform/controls/list_box.h"

namespace sonarith {

class ListBoxModel : public QAbstractListModel {
  public:
    /// Which changes are announced together. All others are announced at once.
    enum class Gathered {
        additions, ///< lines added at the end: at the next event, but at most once in 30 ms
        changes,   ///< lines added and removed close to each other, anywhere: 100 ms late
    };

    /// `list` must outlive this object.
    explicit ListBoxModel(ListBox& list, Gathered gathered);

    /// Announces the pending changes. Calls `onShown` if there were any.
    void showAll();
    std::function<void()> onShown;

    /// The row of a line; -1 for a line that is not announced yet, and for -1.
    [[nodiscard]] int rowOf(int line) const;
    /// The line of a row; -1 for a row whose line was removed, and for -1.
    [[nodiscard]] int lineOf(int row) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

  private:
    /// The place of the pending changes starts at `first`: there, `lines` lines of the list replace
    /// `rows` announced rows. Each row before and after the place shows one line.
    struct Pending {
        int first = 0;
        int rows = 0;
        int lines = 0;
        [[nodiscard]] bool any() const { return rows > 0 || lines > 0; }
    };

    void follow(const ListChange& change);
    void insert(int line);
    void remove(int line);
    [[nodiscard]] bool reaches(int line, int end);
    [[nodiscard]] bool gathersInsertion(int line);
    [[nodiscard]] bool gathersRemoval(int line);
    void showLater();
    [[nodiscard]] std::chrono::milliseconds timeToAnnouncement() const;
    /// The row of a line that is not in the pending place.
    [[nodiscard]] int rowOutside(int line) const;

    ListBox& list_;
    Gathered gathered_;
    int shown_; ///< the number of announced rows
    Pending pending_;
    QTimer waiting_;
    QElapsedTimer sinceAnnouncement_; ///< not valid before the first announcement
    Connection changed_;
};

} // namespace sonarith
