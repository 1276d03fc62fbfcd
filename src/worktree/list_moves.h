// SPDX-License-Identifier: GPL-3.0-or-later
// The lists' half of a move between the "available" and the "selected" side: which entry leaves
// which list and where it arrives. The nodes are moved by TreeMoves.
#pragma once

#include <functional>
#include <string>

#include "app/form1.h"
#include "platform/event_loop.h"
#include "worktree/drag_state.h"

namespace sonarith {

class ListMoves {
  public:
    ListMoves(Form1& form, EventLoop& loop, DragState& drag)
        : form_(form), loop_(loop), drag_(drag) {}

    /// Moves the entry that `s` names, by the parents of DragNode and of the selected node: the
    /// first rule that fits, or none. Yields after each entry that it removes from a file list.
    void moveEntry(const std::string& s);

  private:
    using Test = std::function<bool(const std::string& entry)>;

    void selectTrack(const std::string& s);
    void returnTrack(const std::string& s);
    void selectWav(const std::string& s);
    void returnWav(const std::string& s);
    void selectMp3(const std::string& s);
    void returnMp3(const std::string& s);
    void removeEntries(ListBox& list, const Test& leaves);

    Form1& form_;
    EventLoop& loop_;
    DragState& drag_;
};

} // namespace sonarith
