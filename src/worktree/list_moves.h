// SPDX-License-Identifier: GPL-3.0-or-later
// The lists' half of a move between the "available" and the "selected" side: which entry leaves
// which list and where it arrives. The nodes are moved by TreeMoves.
#pragma once

#include <functional>
#include <string>

#include "forms/form1.h"
#include "platform/event_loop.h"
#include "settings/process_state.h"
#include "worktree/drag_state.h"

namespace sonarith {

/// What asked for a move. A drag knows a file by its whole path and selects an MP3 as a WAV; a
/// double click does neither.
enum class MovedBy { doubleClick, drag };

class ListMoves {
  public:
    /// All outlive this.
    ListMoves(EventLoop& loop, ProcessState& process, Form1& form, DragState& drag)
        : loop_(loop), process_(process), form_(form), drag_(drag) {}

    /// Moves the entry that `text` names, by the parents of DragNode and of the selected node: the
    /// first rule that fits, or none. Yields after each entry that it removes from a file list.
    void moveEntry(const std::string& text, MovedBy movedBy);

  private:
    using Test = std::function<bool(const std::string& entry)>;

    void moveFileEntry(const std::string& s, MovedBy movedBy);
    [[nodiscard]] std::string wholeEntry(const std::string& text);
    void selectTrack(const std::string& s);
    void returnTrack(const std::string& s);
    void selectWav(const std::string& s);
    void returnWav(const std::string& s);
    void selectMp3(const std::string& s, MovedBy movedBy);
    void returnMp3(const std::string& s);
    void removeEntries(ListBox& list, const Test& leaves);

    EventLoop& loop_;
    ProcessState& process_;
    Form1& form_;
    DragState& drag_;
};

} // namespace sonarith
