// SPDX-License-Identifier: GPL-3.0-or-later
// Provides the lines of a ListBox as an item model of Qt, without copying them. To announce a
// change means to emit the model's signals (rowsInserted, rowsRemoved, dataChanged). A search
// changes its lists line by line for minutes. Such changes are announced together, because each
// announcement lays out and paints the list and is sent to screen readers.
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
    /// Which changes are gathered and announced together. All other changes are announced
    /// immediately.
    enum class Gathered {
        /// Lines added at the end; announced when the event loop next runs, at most once in 30 ms.
        additions,
        changes, ///< lines added and removed near each other in the list; announced after 100 ms
    };

    /// `list` must outlive this object.
    explicit ListBoxModel(ListBox& list, Gathered gathered);

    /// Announces the pending changes. Calls `onShown` if there were pending changes.
    void showAll();
    std::function<void()> onShown;

    /// The row of a line. Returns -1 for a line in the range of the pending changes, and for the
    /// argument -1.
    [[nodiscard]] int rowOf(int line) const;
    /// The line of a row. Returns -1 for a row that showAll() will remove, and for the argument -1.
    [[nodiscard]] int lineOf(int row) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

  private:
    /// The range of the pending changes. showAll() will replace a range of announced rows by a
    /// range of lines. Outside of the range, each row shows one line.
    struct Pending {
        /// The number at which the range of rows and the range of lines both begin.
        int first = 0;
        int rows = 0;  ///< the number of announced rows that will be replaced
        int lines = 0; ///< the number of lines that will replace them
        [[nodiscard]] bool any() const { return rows > 0 || lines > 0; }
    };

    void follow(const ListChange& change);
    void insert(int line);
    void remove(int line);
    [[nodiscard]] bool extendPending(int line, int end);
    [[nodiscard]] bool gathersInsertion(int line);
    [[nodiscard]] bool gathersRemoval(int line);
    void showLater();
    [[nodiscard]] std::chrono::milliseconds timeToAnnouncement() const;
    /// The row of a line that is not in the pending range.
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
