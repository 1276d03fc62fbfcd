// SPDX-License-Identifier: GPL-3.0-or-later
// The work tree's popup: which of its entries are open for a node, and the two that take a file out
// of the tree. Starting, minimizing and ending are wired elsewhere.
#pragma once

#include <string>

#include "forms/form1.h"
#include "platform/platform.h"
#include "settings/process_state.h"
#include "worktree/drag_state.h"

namespace sonarith {

class PopupMenu {
  public:
    /// Becomes the handler of the popup and of its two entries. All outlive this.
    PopupMenu(const Platform& platform, ProcessState& process, Form1& form, DragState& drag);
    PopupMenu(const PopupMenu&) = delete;
    PopupMenu& operator=(const PopupMenu&) = delete;

    /// Opens and closes the entries by DragNode before the menu shows. An entry that no rule
    /// touches keeps the state of the time before.
    void mnupopup_Open();
    /// Takes DragNode's file out of the tree and its list, and keeps it on disk. Yields once.
    void mnuFileRemove_Click();
    /// Takes DragNode's file out of the tree and its list and deletes it, unasked. A file that no
    /// list holds stays on disk. Yields, for 0.2 s if it deletes.
    void mnuRemoveDelete_Click();

  private:
    /// Which entries are open.
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
