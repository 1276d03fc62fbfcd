// SPDX-License-Identifier: GPL-3.0-or-later
// The work tree's popup: which of its entries are open for a node, and the two that take a file out
// of the tree. Starting, minimizing and ending are wired elsewhere.
#pragma once

#include <string>

#include "forms/form1.h"
#include "platform/event_loop.h"
#include "platform/file_system.h"
#include "settings/process_state.h"
#include "worktree/drag_state.h"

namespace sonarith {

class PopupMenu {
  public:
    PopupMenu(Form1& form, ProcessState& process, FileSystem& files, EventLoop& loop,
              DragState& drag)
        : form_(form), process_(process), files_(files), loop_(loop), drag_(drag) {}

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

    Form1& form_;
    ProcessState& process_;
    FileSystem& files_;
    EventLoop& loop_;
    DragState& drag_;
};

} // namespace sonarith
