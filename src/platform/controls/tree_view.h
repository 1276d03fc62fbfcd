// SPDX-License-Identifier: GPL-3.0-or-later
// The model of a tree control. Nodes have a key and an index and can be moved to another parent. A
// node can be selected, it can be highlighted as the target of a drop, and its label can be edited
// in place.
#pragma once

#include <memory>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/controls/control.h"
#include "platform/controls/mouse_buttons.h"
#include "platform/result.h"

namespace sonarith {

class TreeNode;
/// A reference to a node. The reference stays valid after the node was removed: the key and text of
/// a removed node can still be read, but it has no parent and no children, and every operation on
/// it fails.
using NodeRef = std::shared_ptr<TreeNode>;

class TreeNode {
  public:
    /// Unique in the tree; never changes.
    [[nodiscard]] const std::string& key() const { return key_; }
    /// The label.
    [[nodiscard]] const std::string& text() const { return text_; }
    [[nodiscard]] int image() const { return image_; }
    [[nodiscard]] int selectedImage() const { return selectedImage_; }
    /// Number of the node in the tree, from 1, in the order of creation. When a node is removed,
    /// all higher indices decrease by one. 0 after removal.
    [[nodiscard]] int index() const { return index_; }
    /// Empty for a root and after removal.
    [[nodiscard]] NodeRef parent() const { return parent_.lock(); }
    [[nodiscard]] const std::vector<NodeRef>& children() const { return children_; }
    /// Position among the siblings, from 0.
    [[nodiscard]] int position() const { return position_; }
    [[nodiscard]] bool removed() const { return index_ == 0; }

  private:
    friend class TreeView;
    std::string key_;
    std::string text_;
    int image_ = 0;
    int selectedImage_ = 0;
    int index_ = 0;
    int position_ = 0;
    std::weak_ptr<TreeNode> parent_;
    std::vector<NodeRef> children_;
};

/// Receives every change of a tree, so that a widget can show the tree.
class TreeObserver {
  public:
    virtual ~TreeObserver() = default;
    /// A node is about to become child number `position` (from 0) of `parent`; with an empty
    /// `parent`, root number `position`.
    virtual void beforeInsert(const NodeRef& parent, int position) = 0;
    virtual void afterInsert(const NodeRef& node) = 0;
    /// `node` and its subtree are about to be removed.
    virtual void beforeRemove(const NodeRef& node) = 0;
    virtual void afterRemove() = 0;
    /// `node` is about to become the last child of `parent`, number `position`.
    virtual void beforeMove(const NodeRef& node, const NodeRef& parent, int position) = 0;
    virtual void afterMove(const NodeRef& node) = 0;
    virtual void textChanged(const NodeRef& node) = 0;
    virtual void selectionChanged() = 0;
    virtual void dropHighlightChanged() = 0;
    /// Asks the observer to expand the node's ancestors and to scroll the node into view.
    virtual void revealRequested(const NodeRef& node) = 0;
    /// Asks the observer to open the in-place editor on the node. The observer reports the end of
    /// the edit with TreeView::finishLabelEdit() or cancelLabelEdit().
    virtual void editRequested(const NodeRef& node) = 0;
    /// Asks the observer to close the editor and to discard its text: its node was removed, or
    /// another node is about to be edited.
    virtual void editAbandoned() {}
    /// Asks the observer to start a drag, in which the user moves the selected node.
    virtual void dragRequested() = 0;
};

class TreeView : public Control {
  public:
    using Control::Control;

    [[nodiscard]] int count() const { return static_cast<int>(nodes_.size()); }
    /// The node with an index from 1 to count(); empty for any other index.
    [[nodiscard]] NodeRef node(int index) const;
    [[nodiscard]] const std::vector<NodeRef>& roots() const { return roots_; }

    /// Adds a node as the last child of `parent`, or as the last root if `parent` is empty. Errors:
    /// keyNotUnique; elementRemoved for a parent that is no longer in the tree.
    Result<NodeRef> add(const NodeRef& parent, const std::string& key, const std::string& text,
                        int image, int selectedImage);
    /// Removes a node and its subtree. The time grows with the number of the node's later siblings
    /// and of the nodes whose index changes. A selection or drop highlight in the subtree is
    /// cleared. An editor that is open in the subtree is closed and its text discarded. Errors:
    /// elementNotFound for an index that no node has; objectNotSet for an empty node;
    /// elementRemoved for a node that is no longer in the tree.
    Status remove(int index);
    Status remove(const NodeRef& node);
    void clear();

    /// Moves a node and its subtree: the node becomes the last child of `parent`. Does nothing if
    /// `parent` is already the node's parent. If the call fails, nothing changes.
    /// Errors: objectNotSet for an empty node or parent, elementRemoved, invalidPropertyValue for a
    /// parent within the node's own subtree.
    Status setParent(const NodeRef& node, const NodeRef& parent);
    Status setText(const NodeRef& node, const std::string& text);

    /// The next and the previous sibling; empty if there is none, or for an empty or removed node.
    [[nodiscard]] NodeRef nextSibling(const NodeRef& node) const;
    [[nodiscard]] NodeRef previousSibling(const NodeRef& node) const;

    [[nodiscard]] NodeRef selectedItem() const { return selected_; }
    /// Errors: objectNotSet for an empty node, elementRemoved; then nothing changes.
    Status setSelectedItem(const NodeRef& node);
    [[nodiscard]] NodeRef dropHighlight() const { return dropHighlight_; }
    /// An empty node clears the highlight. Error: elementRemoved; then nothing changes.
    Status setDropHighlight(const NodeRef& node);
    /// Expands the node's ancestors and scrolls the node into view. Errors as for
    /// setSelectedItem().
    Status ensureVisible(const NodeRef& node);

    /// Runs onBeforeLabelEdit for the selected node, and then opens the editor unless the handler
    /// has set `cancel` or changed the selection. An editor that is open on another node is closed
    /// and its text discarded. Error: objectNotSet if no node is selected.
    Status startLabelEdit();
    /// The node that is being edited; empty while no editor is open.
    [[nodiscard]] NodeRef editedNode() const { return edited_; }
    /// The user has finished the edit with a new text. Runs onAfterLabelEdit and sets the node's
    /// label, unless the handler refuses the text. Does nothing without an open editor.
    void finishLabelEdit(std::string text);
    /// The editor was closed without a new text.
    void cancelLabelEdit() { edited_.reset(); }
    void beginDrag();

    // User input. A NodeRef argument is the node under the pointer, or the node to which a key
    // applies. It is empty if there is no such node.
    Handler<MouseButtons, NodeRef> onMouseDown;
    Handler<MouseButtons, NodeRef> onMouseUp;
    Handler<MouseButtons, NodeRef> onMouseMove;
    Handler<> onDoubleClick;
    Handler<NodeRef> onDragOver;
    Handler<NodeRef> onDragDrop;
    /// The argument `cancel` starts as false; true keeps the editor closed.
    Handler<bool&> onBeforeLabelEdit;
    /// The arguments are `cancel` and the new text. `cancel` starts as false; true keeps the old
    /// label.
    Handler<bool&, const std::string&> onAfterLabelEdit;

    /// Sets the view that observes the tree, or null for no view.
    void setObserver(TreeObserver* observer) { observer_ = observer; }

  protected:
    void atLoad() override {
        clear();
        Control::atLoad();
    }

  private:
    [[nodiscard]] Status usable(const NodeRef& node) const;
    [[nodiscard]] std::vector<NodeRef>& siblings(const TreeNode& node);
    void detachFromSiblings(const NodeRef& node);
    int forgetSubtree(const NodeRef& top);
    void renumberFrom(int index);
    void abandonEdit();

    std::vector<NodeRef> nodes_;
    std::vector<NodeRef> roots_;
    std::unordered_set<std::string> keys_;
    NodeRef selected_;
    NodeRef dropHighlight_;
    NodeRef edited_;
    TreeObserver* observer_ = nullptr;
};

} // namespace sonarith
