// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/list_box_model.h"

#include <algorithm>
#include <chrono>

#include "platform/qt/text.h"

namespace sonarith {
namespace {

/// A delay that the user does not notice.
constexpr std::chrono::milliseconds longestWait{30};

} // namespace

ListBoxModel::ListBoxModel(ListBox& list)
    : list_(list),
      shown_(list.listCount()),
      changed_(list.listChanged.connect([this](ListChange change) { follow(change); })) {
    waiting_.setSingleShot(true);
    connect(&waiting_, &QTimer::timeout, this, [this] { showAll(); });
}

void ListBoxModel::showAll() {
    waiting_.stop();
    if (shown_ < list_.listCount()) {
        sinceAnnouncement_.start();
        beginInsertRows({}, shown_, list_.listCount() - 1);
        shown_ = list_.listCount();
        endInsertRows();
    }
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
        if (change.index < shown_) {
            Q_EMIT dataChanged(index(change.index), index(change.index));
        }
        break;
    case ListChange::Kind::cleared:
        beginResetModel();
        shown_ = 0;
        endResetModel();
        break;
    }
}

void ListBoxModel::insert(int row) {
    if (row >= shown_) {
        if (!waiting_.isActive()) {
            waiting_.start(timeToAnnouncement());
        }
        return;
    }
    beginInsertRows({}, row, row);
    ++shown_;
    endInsertRows();
}

/// None for the first line after a while: what a click shows appears at once.
std::chrono::milliseconds ListBoxModel::timeToAnnouncement() const {
    if (!sinceAnnouncement_.isValid()) {
        return std::chrono::milliseconds(0);
    }
    const std::chrono::milliseconds passed(sinceAnnouncement_.elapsed());
    return std::max(longestWait - passed, std::chrono::milliseconds(0));
}

void ListBoxModel::remove(int row) {
    if (row < shown_) {
        beginRemoveRows({}, row, row);
        --shown_;
        endRemoveRows();
    }
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
        return toQString(list_.list(index.row()));
    default:
        return {};
    }
}

} // namespace sonarith
