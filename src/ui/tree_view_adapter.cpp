// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tree_view_adapter.h"

#include <utility>

namespace sonarith {

TreeViewAdapter::TreeViewAdapter(TreeView& tree, QString label, QWidget* parent)
    : tree_(tree),
      model_(tree),
      widget_(tree, model_, parent),
      view_(tree, widget_, {}, std::move(label), {}, Placement::byControl) {
    tree_.setObserver(this);
    selectionChanged();
}

TreeViewAdapter::~TreeViewAdapter() {
    tree_.setObserver(nullptr);
}

void TreeViewAdapter::beforeInsert(const NodeRef& parent, int position) {
    model_.beforeInsert(parent, position);
}

void TreeViewAdapter::afterInsert(const NodeRef&) {
    model_.afterInsert();
}

void TreeViewAdapter::beforeRemove(const NodeRef& node) {
    model_.beforeRemove(node);
}

void TreeViewAdapter::afterRemove() {
    model_.afterRemove();
}

void TreeViewAdapter::beforeMove(const NodeRef& node, const NodeRef& parent, int position) {
    model_.beforeMove(node, parent, position);
}

void TreeViewAdapter::afterMove(const NodeRef& node) {
    model_.afterMove();
    // Shows the user where the selected node was moved, even if it was moved into a collapsed
    // group.
    if (node == tree_.selectedItem()) {
        widget_.reveal(node);
    }
}

void TreeViewAdapter::textChanged(const NodeRef& node) {
    model_.nodeChanged(node);
}

void TreeViewAdapter::selectionChanged() {
    // The logic applies a new label to the selected node, so an editor that stays open over another
    // node would rename the wrong file.
    if (tree_.editedNode() && tree_.editedNode() != tree_.selectedItem()) {
        tree_.cancelLabelEdit();
        editAbandoned();
    }
    if (shownSelection_ == tree_.selectedItem()) {
        return;
    }
    const NodeRef former = std::exchange(shownSelection_, tree_.selectedItem());
    widget_.showSelection();
    model_.nodeChanged(former);
    model_.nodeChanged(shownSelection_);
}

void TreeViewAdapter::dropHighlightChanged() {
    widget_.showDropHighlight();
}

void TreeViewAdapter::revealRequested(const NodeRef& node) {
    widget_.reveal(node);
}

void TreeViewAdapter::editRequested(const NodeRef& node) {
    widget_.openEditor(node);
}

void TreeViewAdapter::editAbandoned() {
    widget_.dropEditorWithoutNode();
}

void TreeViewAdapter::dragRequested() {
    widget_.startDrag();
}

} // namespace sonarith
