// SPDX-License-Identifier: GPL-3.0-or-later
// Moves an item of the work tree between the "available" and the "selected" side of its collection:
// first its entry in the lists, then its node. The caller chooses the item.
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
    /// All parameters must outlive this object.
    TreeMoves(EventLoop& loop, ProcessState& process, Form1& form, DragState& drag)
        : loop_(loop), form_(form), drag_(drag), lists_(loop, process, form, drag) {}

    /// Moves an item after a double click: the selected node's text names the entry, and
    /// DragState::DragNode is the node that moves. Does nothing without a selection. Yields;
    /// DragNode may change during the yield.
    void moveSelected();

    /// Moves DragNode, and the entry that `text` names, during a drag. A file's entry is its whole
    /// path; it is found by the name of the file, because the node may show only the name. Does
    /// nothing for an empty text. Yields.
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
