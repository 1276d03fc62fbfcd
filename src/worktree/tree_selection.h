// SPDX-License-Identifier: GPL-3.0-or-later
// Handles mouse presses, releases and double clicks on the work tree. The selected node alone
// determines the next action: what the button "Start " does. TreeDrag handles drags, and LabelEdit
// handles label edits.
#pragma once

#include "forms/form1.h"
#include "platform/event_loop.h"
#include "settings/process_state.h"
#include "worktree/drag_state.h"
#include "worktree/tree_moves.h"

namespace sonarith {

class TreeSelection {
  public:
    /// Sets the handlers of the tree's presses, releases and double clicks. All parameters must
    /// outlive this object.
    TreeSelection(EventLoop& loop, ProcessState& process, Form1& form, DragState& drag,
                  TreeMoves& moves);
    TreeSelection(const TreeSelection&) = delete;
    TreeSelection& operator=(const TreeSelection&) = delete;

    /// Selects the node under the pointer, then opens the popup (right button) or starts label
    /// editing. Returns after the first step that fails.
    void TreeView1_MouseDown(MouseButtons buttons, const NodeRef& at);
    /// Shows the next action for the selected node. Then selects the highlighted node, if any. If
    /// the selected node is now a track, sets the current track number.
    void TreeView1_MouseUp();
    /// Moves the double-clicked item from the "available" to the "selected" side of its
    /// collection, or back.
    void TreeView1_DblClick();

  private:
    EventLoop& loop_;
    ProcessState& process_;
    Form1& form_;
    DragState& drag_;
    TreeMoves& moves_;
};

} // namespace sonarith
