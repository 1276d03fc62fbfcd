// SPDX-License-Identifier: GPL-3.0-or-later
// Provides the nodes of the work tree as an item model of Qt. Copies no nodes and changes none: it
// reads the TreeView, and is notified before and after nodes are added, moved or removed.
#pragma once

#include <QAbstractItemModel>

#include "platform/controls/tree_view.h"

namespace sonarith {

class TreeModel : public QAbstractItemModel {
  public:
    explicit TreeModel(const TreeView& tree) : tree_(tree) {}

    /// The node at an index; empty for an invalid index.
    [[nodiscard]] NodeRef nodeAt(const QModelIndex& index) const;
    /// The index of a node; invalid for an empty node, and for a node that is not in the tree.
    [[nodiscard]] QModelIndex indexOf(const NodeRef& node) const;

    // The next six functions have the same meaning as the functions of TreeObserver with these
    // names.
    void beforeInsert(const NodeRef& parent, int position);
    void afterInsert() { endInsertRows(); }
    void beforeRemove(const NodeRef& node);
    void afterRemove() { endRemoveRows(); }
    void beforeMove(const NodeRef& node, const NodeRef& parent, int position);
    void afterMove() { endMoveRows(); }

    /// Must be called after the node's text or picture has changed.
    void nodeChanged(const NodeRef& node);

    [[nodiscard]] QModelIndex index(int row, int column,
                                    const QModelIndex& parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex& child) const override;
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

  private:
    [[nodiscard]] const std::vector<NodeRef>& childrenOf(const QModelIndex& parent) const;

    const TreeView& tree_;
};

} // namespace sonarith
