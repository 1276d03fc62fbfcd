// SPDX-License-Identifier: GPL-3.0-or-later
// Handles the work tree's popup: enables its entries for a node, and runs the two entries that
// remove a file from the tree. Other classes handle the entries for starting, minimizing and
// ending.
//
// To find a file's path in the list boxes, the handlers of these two entries use the node's text as
// a wildcard pattern (wildcard.h). If the text contains '#' or '[', it may match no path, or the
// path of another file. In the second case, that path is removed from its list box, and
// mnuRemoveDelete_Click() deletes that other file.
#pragma once

#include <string>

#include "forms/form1.h"
#include "platform/platform.h"
#include "settings/process_state.h"
#include "worktree/drag_state.h"

namespace sonarith {

class PopupMenu {
  public:
    /// Sets the handlers of the popup and of the two entries that remove a file. All parameters
    /// must outlive this object.
    PopupMenu(const Platform& platform, ProcessState& process, Form1& form, DragState& drag);
    PopupMenu(const PopupMenu&) = delete;
    PopupMenu& operator=(const PopupMenu&) = delete;

    /// Enables and disables the entries before the menu opens, according to the node for which it
    /// opens (DragState::DragNode). For a group from which no action can start ("WAV Files"), the
    /// entries keep their previous state.
    void mnupopup_Open();
    /// Removes from the tree the first node that has the same text as DragNode, but keeps the file
    /// on disk. Does nothing if hasFileEnding() is false for this text. If the text is a whole
    /// path, also removes the path from its list box (List1, List2, List4 or List5). If the text is
    /// only a file name, the path stays in the list box. Yields once.
    void mnuFileRemove_Click();
    /// Removes from the tree the first node that has the same text as DragNode. Does nothing unless
    /// this text ends in ".wav" or ".mp3", in upper, lower or mixed case. Also removes the file's
    /// path from its list box (List1, List2, List4 or List5), and deletes the file without asking
    /// the user. A file whose path is in none of these list boxes stays on disk. Yields once before
    /// it removes the node. After it has deleted a file, it yields for 0.2 s.
    void mnuRemoveDelete_Click();

  private:
    /// Which entries are enabled.
    struct Open {
        bool mnuRemoveDelete = false;
        bool mnuStart2 = false;
        bool mnuFileRemove = false;
    };
    void set(Open open);
    [[nodiscard]] std::string draggedText() const;
    void removeNode(const std::string& text);
    void destroy(ListBox& list, int index);

    const Platform& platform_;
    ProcessState& process_;
    Form1& form_;
    DragState& drag_;
};

} // namespace sonarith
