// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/controls/tree_view.h"

#include <algorithm>
#include <iterator>

namespace sonarith {

NodeRef TreeView::node(int index) const {
    return index >= 1 && index <= count() ? nodes_[static_cast<std::size_t>(index - 1)] : nullptr;
}

Status TreeView::usable(const NodeRef& node) const {
    if (!node) {
        return {ErrorNumber::objectNotSet, "There is no node."};
    }
    if (node->removed()) {
        return {ErrorNumber::elementRemoved, "The node is no longer in the tree."};
    }
    return {};
}

std::vector<NodeRef>& TreeView::siblings(const TreeNode& node) {
    const NodeRef parent = node.parent();
    return parent ? parent->children_ : roots_;
}

Result<NodeRef> TreeView::add(const NodeRef& parent, const std::string& key,
                              const std::string& text, int image, int selectedImage) {
    if (parent && parent->removed()) {
        return {ErrorNumber::elementRemoved, "The parent is no longer in the tree."};
    }
    if (keys_.contains(key)) {
        return {ErrorNumber::keyNotUnique, "The tree already has a node with this key."};
    }
    auto& places = parent ? parent->children_ : roots_;
    auto added = std::make_shared<TreeNode>();
    added->key_ = key;
    added->text_ = text;
    added->image_ = image;
    added->selectedImage_ = selectedImage;
    added->parent_ = parent;
    added->position_ = static_cast<int>(places.size());
    if (observer_) {
        observer_->beforeInsert(parent, added->position_);
    }
    places.push_back(added);
    nodes_.push_back(added);
    added->index_ = count();
    keys_.insert(key);
    if (observer_) {
        observer_->afterInsert(added);
    }
    return added;
}

Status TreeView::remove(int index) {
    const NodeRef found = node(index);
    if (!found) {
        return {ErrorNumber::elementNotFound, "The tree has no node with this index."};
    }
    return remove(found);
}

Status TreeView::remove(const NodeRef& node) {
    // A copy, because the caller may have passed an element of a list that changes here.
    const NodeRef leaving = node; // NOLINT(performance-unnecessary-copy-initialization)
    if (Status status = usable(leaving); !status.ok()) {
        return status;
    }
    const NodeRef formerSelection = selected_;
    const NodeRef formerHighlight = dropHighlight_;
    const NodeRef formerEdited = edited_;
    if (observer_) {
        observer_->beforeRemove(leaving);
    }
    detachFromSiblings(leaving);
    renumberFrom(forgetSubtree(leaving));
    if (observer_) {
        observer_->afterRemove();
        if (selected_ != formerSelection) {
            observer_->selectionChanged();
        }
        if (dropHighlight_ != formerHighlight) {
            observer_->dropHighlightChanged();
        }
        if (formerEdited && formerEdited->removed()) {
            observer_->editAbandoned();
        }
    }
    return {};
}

void TreeView::clear() {
    while (!roots_.empty()) {
        remove(NodeRef(roots_.back())).passOver();
    }
}

void TreeView::detachFromSiblings(const NodeRef& node) {
    auto& places = siblings(*node);
    places.erase(places.begin() + node->position_);
    for (std::size_t i = static_cast<std::size_t>(node->position_); i < places.size(); ++i) {
        places[i]->position_ = static_cast<int>(i);
    }
}

/// Clears the index, the parent and the children of a detached node and of every node in its
/// subtree. Returns the lowest index that one of these nodes had. Uses a loop instead of recursion,
/// so that a deep tree does not overflow the stack.
int TreeView::forgetSubtree(const NodeRef& top) {
    int lowest = top->index_;
    std::vector<NodeRef> leaving = {top};
    while (!leaving.empty()) {
        const NodeRef node = std::move(leaving.back());
        leaving.pop_back();
        lowest = std::min(lowest, node->index_);
        keys_.erase(node->key_);
        node->index_ = 0;
        node->parent_.reset();
        for (NodeRef* reference : {&selected_, &dropHighlight_, &edited_}) {
            if (*reference == node) {
                reference->reset();
            }
        }
        std::ranges::move(node->children_, std::back_inserter(leaving));
        node->children_.clear();
    }
    return lowest;
}

void TreeView::renumberFrom(int index) {
    const auto first = nodes_.begin() + (index - 1);
    nodes_.erase(
        std::remove_if(first, nodes_.end(), [](const NodeRef& node) { return node->removed(); }),
        nodes_.end());
    for (auto i = static_cast<std::size_t>(index - 1); i < nodes_.size(); ++i) {
        nodes_[i]->index_ = static_cast<int>(i) + 1;
    }
}

Status TreeView::setParent(const NodeRef& child, const NodeRef& newParent) {
    // Copies, because the caller may have passed elements of the lists that change here.
    const NodeRef node = child;       // NOLINT(performance-unnecessary-copy-initialization)
    const NodeRef parent = newParent; // NOLINT(performance-unnecessary-copy-initialization)
    for (const NodeRef& involved : {node, parent}) {
        if (Status status = usable(involved); !status.ok()) {
            return status;
        }
    }
    for (NodeRef above = parent; above; above = above->parent()) {
        if (above == node) {
            return {ErrorNumber::invalidPropertyValue, "A node cannot be placed below itself."};
        }
    }
    if (node->parent() == parent) {
        return {};
    }
    const int position = static_cast<int>(parent->children_.size());
    if (observer_) {
        observer_->beforeMove(node, parent, position);
    }
    detachFromSiblings(node);
    node->parent_ = parent;
    node->position_ = position;
    parent->children_.push_back(node);
    if (observer_) {
        observer_->afterMove(node);
    }
    return {};
}

Status TreeView::setText(const NodeRef& node, const std::string& text) {
    Status status = usable(node);
    if (status.ok() && node->text_ != text) {
        node->text_ = text;
        if (observer_) {
            observer_->textChanged(node);
        }
    }
    return status;
}

NodeRef TreeView::nextSibling(const NodeRef& node) const {
    if (!usable(node).ok()) {
        return nullptr;
    }
    const NodeRef parent = node->parent();
    const auto& places = parent ? parent->children_ : roots_;
    const auto next = static_cast<std::size_t>(node->position_) + 1;
    return next < places.size() ? places[next] : nullptr;
}

NodeRef TreeView::previousSibling(const NodeRef& node) const {
    if (!usable(node).ok() || node->position_ == 0) {
        return nullptr;
    }
    const NodeRef parent = node->parent();
    const auto& places = parent ? parent->children_ : roots_;
    return places[static_cast<std::size_t>(node->position_) - 1];
}

Status TreeView::setSelectedItem(const NodeRef& node) {
    Status status = usable(node);
    if (status.ok() && selected_ != node) {
        selected_ = node;
        if (observer_) {
            observer_->selectionChanged();
        }
    }
    return status;
}

Status TreeView::setDropHighlight(const NodeRef& node) {
    if (node && node->removed()) {
        return usable(node);
    }
    if (dropHighlight_ != node) {
        dropHighlight_ = node;
        if (observer_) {
            observer_->dropHighlightChanged();
        }
    }
    return {};
}

Status TreeView::ensureVisible(const NodeRef& node) {
    Status status = usable(node);
    if (status.ok() && observer_) {
        observer_->revealRequested(node);
    }
    return status;
}

Status TreeView::startLabelEdit() {
    const NodeRef node = selected_;
    if (Status status = usable(node); !status.ok()) {
        return status;
    }
    bool cancel = false;
    run(onBeforeLabelEdit, cancel);
    // The handler has permitted the edit of `node` only. If the handler has selected another node,
    // no edit starts.
    if (cancel || selected_ != node) {
        return {};
    }
    if (edited_ && edited_ != node) {
        abandonEdit();
    }
    edited_ = node;
    if (observer_) {
        observer_->editRequested(node);
    }
    return {};
}

// By value, because the handler may change the string that the caller passed.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void TreeView::finishLabelEdit(std::string text) {
    const NodeRef finished = std::exchange(edited_, nullptr);
    if (!finished) {
        return;
    }
    bool cancel = false;
    run(onAfterLabelEdit, cancel, text);
    if (!cancel) {
        // The handler may have yielded, and the node may have been removed.
        setText(finished, text).passOver();
    }
}

void TreeView::abandonEdit() {
    edited_.reset();
    if (observer_) {
        observer_->editAbandoned();
    }
}

void TreeView::beginDrag() {
    if (observer_) {
        observer_->dragRequested();
    }
}

} // namespace sonarith
