// SPDX-License-Identifier: GPL-3.0-or-later
// Handles drags over the work tree: how a drag starts, which nodes accept the dragged node, and the
// drop. TreeMoves moves the dragged node (DragState::DragNode) while the pointer still moves,
// before the drop.
#pragma once

#include <string>

#include "forms/form1.h"
#include "worktree/drag_state.h"
#include "worktree/tree_moves.h"

namespace sonarith {

class TreeDrag {
  public:
    /// Sets the handlers of the tree's mouse moves and drags. All parameters must outlive this
    /// object.
    TreeDrag(Form1& form, DragState& drag, TreeMoves& moves);
    TreeDrag(const TreeDrag&) = delete;
    TreeDrag& operator=(const TreeDrag&) = delete;

    /// Starts to drag DragNode if only the left button is down. Groups cannot be dragged.
    void TreeView1_MouseMove(MouseButtons down);
    /// The pointer drags DragNode over `target` (empty: no node). Moves DragNode from the
    /// "available" to the "selected" side of its collection (the root above it), or back, and
    /// yields. DragNode does not move if `target` equals DragState::DropTarget, or is a group or
    /// item that refuses DragNode's kind.
    void TreeView1_DragOver(const NodeRef& target);
    /// If a node is highlighted, makes DragNode its child, even if TreeMoves has moved DragNode
    /// elsewhere during the drag. Ends the drag.
    void TreeView1_DragDrop();

  private:
    [[nodiscard]] bool levelsFit(const NodeRef& target) const;

    Form1& form_;
    DragState& drag_;
    TreeMoves& moves_;
};

} // namespace sonarith
