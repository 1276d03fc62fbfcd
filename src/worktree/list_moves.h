// SPDX-License-Identifier: GPL-3.0-or-later
// Moves entries between the lists of available and the lists of selected tracks and files.
// TreeMoves moves the nodes.
#pragma once

#include <functional>
#include <string>

#include "forms/form1.h"
#include "platform/event_loop.h"
#include "settings/process_state.h"
#include "worktree/drag_state.h"

namespace sonarith {

/// The trigger of a move. For a file, the trigger determines which entry is moved. On a double
/// click, the entry is the text that is passed to moveEntry(). On a drag, the entry is the first
/// entry with the same file name as this text. A drag that moves an MP3 file to the list of
/// selected MP3 files moves only the entry of this file. A double click that moves such an entry
/// also empties the list of available MP3 files. The double click also duplicates the entries
/// that the list of selected MP3 files already contains.
enum class MovedBy { doubleClick, drag };

class ListMoves {
  public:
    /// All parameters must outlive this object.
    ListMoves(EventLoop& loop, ProcessState& process, Form1& form, DragState& drag)
        : loop_(loop), process_(process), form_(form), drag_(drag) {}

    /// Moves the entry that `text` names. There is one rule for each kind of entry and each
    /// direction. The kind depends on `text`. The direction depends on the parent of DragNode; for
    /// a WAV file, on the parent of the tree's selected node. If no rule fits, nothing moves.
    /// Yields after each entry that it removes from a file list.
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
