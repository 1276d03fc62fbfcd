// SPDX-License-Identifier: GPL-3.0-or-later
// Handles the work tree's popup: enables its entries for a node, and runs the two entries that
// remove a file from the tree. Other classes handle the entries for starting, minimizing and
// ending.
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
    /// Removes DragNode's file from the tree, but keeps it on disk. Also removes the file from its
    /// list if the node shows the file's whole path, but not if it shows only the name. Yields
    /// once.
    void mnuFileRemove_Click();
    /// Removes DragNode's file from the tree and from its list, and deletes the file from the disk
    /// without asking the user. A file that is in no list stays on disk. Yields once; after it has
    /// deleted a file, also yields for 0.2 s.
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
