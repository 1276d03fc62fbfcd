// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/list_box_model.h"

#include <algorithm>
#include <chrono>

#include "platform/qt/text.h"

namespace sonarith {
namespace {

/// A delay that the user does not notice.
constexpr std::chrono::milliseconds shortWait{30};
/// With this delay, the list still changes often enough for the user to see that a search is
/// running. Painting the gathered changes takes less than a tenth of this time.
constexpr std::chrono::milliseconds longWait{100};

} // namespace

ListBoxModel::ListBoxModel(ListBox& list, Gathered gathered)
    : list_(list),
      gathered_(gathered),
      shown_(list.listCount()),
      changed_(list.listChanged.connect([this](ListChange change) { follow(change); })) {
    waiting_.setSingleShot(true);
    connect(&waiting_, &QTimer::timeout, this, [this] { showAll(); });
}

void ListBoxModel::showAll() {
    waiting_.stop();
    if (!pending_.any()) {
        return;
    }
    sinceAnnouncement_.start();
    const auto [first, rows, lines] = pending_;
    const auto settle = [this, added = lines - rows] {
        pending_ = {};
        shown_ += added;
    };
    if (lines > rows) {
        beginInsertRows({}, first + rows, first + lines - 1);
        settle();
        endInsertRows();
    } else if (rows > lines) {
        beginRemoveRows({}, first + lines, first + rows - 1);
        settle();
        endRemoveRows();
    } else {
        settle();
    }
    if (const int changed = std::min(rows, lines); changed > 0) {
        Q_EMIT dataChanged(index(first), index(first + changed - 1));
    }
    if (onShown) {
        onShown();
    }
}

void ListBoxModel::showLater() {
    if (!waiting_.isActive()) {
        waiting_.start(timeToAnnouncement());
    }
}

/// The time until the pending changes are announced. For gathered additions it is 0, unless the
/// last announcement was less than 30 ms ago: so lines that a click adds appear at once.
std::chrono::milliseconds ListBoxModel::timeToAnnouncement() const {
    if (gathered_ == Gathered::changes) {
        return longWait;
    }
    if (!sinceAnnouncement_.isValid()) {
        return std::chrono::milliseconds(0);
    }
    const std::chrono::milliseconds passed(sinceAnnouncement_.elapsed());
    return std::max(shortWait - passed, std::chrono::milliseconds(0));
}

int ListBoxModel::rowOutside(int line) const {
    return line < pending_.first ? line : line - pending_.lines + pending_.rows;
}

int ListBoxModel::rowOf(int line) const {
    const bool isPending = line >= pending_.first && line < pending_.first + pending_.lines;
    return isPending ? -1 : rowOutside(line);
}

int ListBoxModel::lineOf(int row) const {
    if (row >= pending_.first + pending_.rows) {
        return row - pending_.rows + pending_.lines;
    }
    return row < pending_.first + pending_.lines ? row : -1;
}

void ListBoxModel::follow(const ListChange& change) {
    switch (change.kind) {
    case ListChange::Kind::inserted:
        insert(change.index);
        break;
    case ListChange::Kind::removed:
        remove(change.index);
        break;
    case ListChange::Kind::edited:
        if (const int row = rowOf(change.index); row >= 0) {
            Q_EMIT dataChanged(index(row), index(row));
        }
        break;
    case ListChange::Kind::cleared:
        beginResetModel();
        pending_ = {};
        shown_ = 0;
        endResetModel();
        break;
    }
}

/// If `line` is close to the range of pending lines, extends the range to `line` and returns true.
/// `end` is the first line after the range. The unchanged lines between the range and `line` become
/// part of the range. For example, a search removes the first folder, then inserts the subfolders
/// of the next folder behind that folder. One range includes all these changes.
bool ListBoxModel::extendPending(int line, int end) {
    constexpr int closeBy = 2;
    const int before = std::max(0, pending_.first - line);
    const int behind = std::max(0, line - end);
    if (before + behind > (gathered_ == Gathered::changes ? closeBy : 0)) {
        return false;
    }
    pending_.first -= before;
    pending_.rows += before + behind;
    pending_.lines += before + behind;
    return true;
}

bool ListBoxModel::gathersInsertion(int line) {
    if (!pending_.any()) {
        if (line < shown_ && gathered_ == Gathered::additions) {
            return false;
        }
        pending_.first = line;
    }
    if (!extendPending(line, pending_.first + pending_.lines)) {
        return false;
    }
    ++pending_.lines;
    return true;
}

void ListBoxModel::insert(int line) {
    if (gathersInsertion(line)) {
        showLater();
        return;
    }
    const int row = rowOutside(line);
    beginInsertRows({}, row, row);
    pending_.first += line < pending_.first ? 1 : 0;
    ++shown_;
    endInsertRows();
}

bool ListBoxModel::gathersRemoval(int line) {
    const bool isPending = line >= pending_.first && line < pending_.first + pending_.lines;
    if (isPending) {
        --pending_.lines;
        return true;
    }
    if (gathered_ == Gathered::additions) {
        return false;
    }
    if (!pending_.any()) {
        pending_.first = line;
    }
    // If the removed line is before the pending range, the extended range includes that line.
    // Otherwise the removed line is the first line after the extended range.
    const bool isBefore = line < pending_.first;
    if (!extendPending(line, pending_.first + pending_.lines)) {
        return false;
    }
    pending_.rows += isBefore ? 0 : 1;
    pending_.lines -= isBefore ? 1 : 0;
    return true;
}

void ListBoxModel::remove(int line) {
    if (gathersRemoval(line)) {
        showLater();
        return;
    }
    const int row = rowOutside(line);
    beginRemoveRows({}, row, row);
    pending_.first -= line < pending_.first ? 1 : 0;
    --shown_;
    endRemoveRows();
}

int ListBoxModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : shown_;
}

QVariant ListBoxModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return toQString(list_.list(lineOf(index.row())));
    default:
        return {};
    }
}

} // namespace sonarith
