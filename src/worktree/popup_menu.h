// SPDX-License-Identifier: GPL-3.0-or-later
// The work tree's popup: which of its entries are enabled for a node, and the two entries that
// remove a file from the tree. Starting, minimizing and ending are wired elsewhere.
#pragma once

#include <string>

#include "forms/form1.h"
#include "platform/platform.h"
#include "settings/process_state.h"
#include "worktree/drag_state.h"

namespace sonarith {

class PopupMenu {
  public:
    /// Sets the handlers of the popup and of its two entries. All parameters must outlive this
    /// object.
    PopupMenu(const Platform& platform, ProcessState& process, Form1& form, DragState& drag);
    PopupMenu(const PopupMenu&) = delete;
    PopupMenu& operator=(const PopupMenu&) = delete;

    /// Enables and disables the entries according to DragNode before the menu opens. An entry
    /// without a matching rule keeps its previous state.
    void mnupopup_Open();
    /// Removes DragNode's file from the tree and its list, but keeps it on disk. Yields once.
    void mnuFileRemove_Click();
    /// Removes DragNode's file from the tree and its list and deletes it without a question. A file
    /// that is in no list stays on disk. Yields, for 0.2 s if it deletes.
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
