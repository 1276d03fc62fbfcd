// SPDX-License-Identifier: GPL-3.0-or-later
// Paints a row of the work tree. Marks the row of the drop target (TreeView::dropHighlight)
// unless the drop target is selected. Paints a row paler while its node is dragged with the
// keyboard.
#pragma once

#include <utility>

#include <QStyledItemDelegate>

#include "ui/tree_model.h"

namespace sonarith {

class TreeDelegate : public QStyledItemDelegate {
  public:
    TreeDelegate(const TreeView& tree, const TreeModel& model, QObject* parent)
        : QStyledItemDelegate(parent), tree_(tree), model_(model) {}

    /// Sets the node that is dragged with the keyboard; empty for none.
    void setCarried(NodeRef node) { carried_ = std::move(node); }
    [[nodiscard]] const NodeRef& carried() const { return carried_; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override;

  private:
    const TreeView& tree_;
    const TreeModel& model_;
    NodeRef carried_;
};

} // namespace sonarith
