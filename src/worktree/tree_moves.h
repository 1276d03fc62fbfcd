// SPDX-License-Identifier: GPL-3.0-or-later
// Moves an item of the work tree between the "available" and the "selected" side of its collection:
// first its entry in the lists, then its node. Which item, and what asked for it, is the caller's.
#pragma once

#include <string>

#include "app/form1.h"
#include "platform/event_loop.h"
#include "worktree/drag_state.h"
#include "worktree/list_moves.h"

namespace sonarith {

class TreeMoves {
  public:
    TreeMoves(Form1& form, EventLoop& loop, DragState& drag)
        : form_(form), loop_(loop), drag_(drag), lists_(form, loop, drag) {}

    /// The move that a double click asks for, of the selected node's text and DragNode. Nothing
    /// happens if nothing is selected. Yields; DragNode may be another one from then on.
    void moveSelected();

  private:
    void moveNode();
    void moveTrackNode();
    void moveUnderNode(int index);
    void rebuildAvailableTracks();
    void moveFileNode();

    Form1& form_;
    EventLoop& loop_;
    DragState& drag_;
    ListMoves lists_;
};

} // namespace sonarith
