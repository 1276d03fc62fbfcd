// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/tree_nodes.h"

namespace sonarith {

namespace {

/// Picture numbers of a node: normal, and while it is selected.
struct Images {
    int normal;
    int selected;
};
constexpr Images collectionImages = {1, 4};
constexpr Images groupImages = {2, 5};
constexpr Images itemImages = {3, 6};

/// Fails without a parent, so that a group or an item never becomes a root.
Result<NodeRef> addBelow(TreeView& tree, const NodeRef& parent, const std::string& key,
                         const std::string& text, Images images) {
    if (!parent) {
        return {ErrorNumber::objectNotSet, "The new node has no parent node."};
    }
    return tree.add(parent, key, text, images.normal, images.selected);
}

} // namespace

Result<NodeRef> addCollection(TreeView& tree, const std::string& key, const std::string& text) {
    return tree.add(nullptr, key, text, collectionImages.normal, collectionImages.selected);
}

Result<NodeRef> addGroup(TreeView& tree, const NodeRef& collection, const std::string& key,
                         const std::string& text) {
    return addBelow(tree, collection, key, text, groupImages);
}

Result<NodeRef> addItem(TreeView& tree, const NodeRef& group, const std::string& key,
                        const std::string& text) {
    return addBelow(tree, group, key, text, itemImages);
}

NodeRef firstNodeOfText(const TreeView& tree, const std::string& text) {
    for (int i = 1; i <= tree.count(); ++i) {
        if (NodeRef node = tree.node(i); node->text() == text) {
            return node;
        }
    }
    return nullptr;
}

std::string textOf(const NodeRef& node) {
    return node ? node->text() : std::string();
}

std::string parentText(const NodeRef& node) {
    return textOf(node ? node->parent() : nullptr);
}

bool isTrackText(const std::string& text) {
    return text.starts_with("Track");
}

} // namespace sonarith
