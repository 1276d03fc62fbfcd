// SPDX-License-Identifier: GPL-3.0-or-later
// A drag over the work tree: how it starts, which nodes let it pass, and the drop. An item moves
// while the pointer still moves; how it moves is TreeMoves' affair.
#pragma once

#include <string>

#include "forms/form1.h"
#include "worktree/drag_state.h"
#include "worktree/tree_moves.h"

namespace sonarith {

class TreeDrag {
  public:
    /// Becomes the handler of the tree's mouse moves and drags. All outlive this.
    TreeDrag(Form1& form, DragState& drag, TreeMoves& moves);
    TreeDrag(const TreeDrag&) = delete;
    TreeDrag& operator=(const TreeDrag&) = delete;

    /// Begins to drag DragNode if the left button alone is down. Groups are not dragged.
    void TreeView1_MouseMove(MouseButtons down);
    /// The pointer carries DragNode over `target` (empty: no node). Moves DragNode to the other
    /// side, unless `target` is the node of the time before or refuses DragNode's kind. Yields.
    void TreeView1_DragOver(const NodeRef& target);
    /// Puts DragNode below the highlighted node, if there is one, and ends the drag.
    void TreeView1_DragDrop();

  private:
    [[nodiscard]] bool levelsFit(const NodeRef& target) const;

    Form1& form_;
    DragState& drag_;
    TreeMoves& moves_;
};

} // namespace sonarith
