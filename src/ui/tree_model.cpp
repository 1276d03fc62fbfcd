// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tree_model.h"

#include "platform/qt/text.h"
#include "ui/icons.h"
#include "ui/tool_tip.h"

namespace sonarith {

namespace {

const TreeNode* behind(const QModelIndex& index) {
    return static_cast<const TreeNode*>(index.constInternalPointer());
}

} // namespace

const std::vector<NodeRef>& TreeModel::childrenOf(const QModelIndex& parent) const {
    return parent.isValid() ? behind(parent)->children() : tree_.roots();
}

NodeRef TreeModel::nodeAt(const QModelIndex& index) const {
    if (!index.isValid()) {
        return nullptr;
    }
    const TreeNode& node = *behind(index);
    const NodeRef above = node.parent();
    const auto& siblings = above ? above->children() : tree_.roots();
    return siblings[static_cast<std::size_t>(node.position())];
}

QModelIndex TreeModel::indexOf(const NodeRef& node) const {
    return node && !node->removed() ? createIndex(node->position(), 0, node.get()) : QModelIndex();
}

void TreeModel::beforeInsert(const NodeRef& parent, int position) {
    beginInsertRows(indexOf(parent), position, position);
}

void TreeModel::beforeRemove(const NodeRef& node) {
    beginRemoveRows(indexOf(node->parent()), node->position(), node->position());
}

void TreeModel::beforeMove(const NodeRef& node, const NodeRef& parent, int position) {
    beginMoveRows(indexOf(node->parent()), node->position(), node->position(), indexOf(parent),
                  position);
}

void TreeModel::nodeChanged(const NodeRef& node) {
    if (const QModelIndex index = indexOf(node); index.isValid()) {
        Q_EMIT dataChanged(index, index);
    }
}

QModelIndex TreeModel::index(int row, int column, const QModelIndex& parent) const {
    const auto& children = childrenOf(parent);
    if (column != 0 || row < 0 || row >= static_cast<int>(children.size())) {
        return {};
    }
    return createIndex(row, 0, children[static_cast<std::size_t>(row)].get());
}

QModelIndex TreeModel::parent(const QModelIndex& child) const {
    return child.isValid() ? indexOf(behind(child)->parent()) : QModelIndex();
}

int TreeModel::rowCount(const QModelIndex& parent) const {
    return static_cast<int>(childrenOf(parent).size());
}

int TreeModel::columnCount(const QModelIndex&) const {
    return 1;
}

QVariant TreeModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    const TreeNode& node = *behind(index);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return toQString(node.text());
    case Qt::ToolTipRole: // for texts that are shortened in a narrow window
        return plainToolTip(toQString(node.text()));
    case Qt::DecorationRole: {
        const bool selected = tree_.selectedItem().get() == &node;
        return treeImage(selected ? node.selectedImage() : node.image());
    }
    default:
        return {};
    }
}

} // namespace sonarith
