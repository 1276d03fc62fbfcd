// SPDX-License-Identifier: GPL-3.0-or-later
// Moves an item of the work tree between the "available" and the "selected" side of its collection:
// first its entry in the lists, then its node. Which item, and what asked for it, is the caller's.
#pragma once

#include <string>

#include "forms/form1.h"
#include "platform/event_loop.h"
#include "settings/process_state.h"
#include "worktree/drag_state.h"
#include "worktree/list_moves.h"

namespace sonarith {

class TreeMoves {
  public:
    /// All outlive this.
    TreeMoves(EventLoop& loop, ProcessState& process, Form1& form, DragState& drag)
        : loop_(loop), form_(form), drag_(drag), lists_(loop, process, form, drag) {}

    /// The move that a double click asks for, of the selected node's text and DragNode. Nothing
    /// happens if nothing is selected. Yields; DragNode may be another one from then on.
    void moveSelected();

    /// The move step of a drag, of DragNode, whose text the caller gives. A file is found in the
    /// lists by its name, so that its whole path moves whatever the node shows. Nothing happens for
    /// an empty text. Yields.
    void MoveDraggedNode(const std::string& text);

  private:
    void move(const std::string& text, MovedBy movedBy);
    void moveNode();
    void moveTrackNode();
    void moveUnderNode(int index);
    void rebuildAvailableTracks();
    void moveFileNode();

    EventLoop& loop_;
    Form1& form_;
    DragState& drag_;
    ListMoves lists_;
};

} // namespace sonarith
