// SPDX-License-Identifier: GPL-3.0-or-later
// Handles in-place edits of the work tree's labels: decides which nodes may be edited, and renames
// the file and the list entry after an edit. The editor itself belongs to the view of the tree.
#pragma once

#include <string>

#include "forms/form1.h"
#include "platform/platform.h"
#include "platform/result.h"
#include "settings/process_state.h"
#include "worktree/drag_state.h"

namespace sonarith {

class LabelEdit {
  public:
    /// Sets the handlers of the tree's label edits. All parameters must outlive this object.
    LabelEdit(const Platform& platform, ProcessState& process, Form1& form, DragState& drag);
    LabelEdit(const LabelEdit&) = delete;
    LabelEdit& operator=(const LabelEdit&) = delete;

    /// Refuses the edit (`cancel`) unless the selected node's text ends in ".wav", ".WAV", ".mp3"
    /// or ".MP3".
    void TreeView1_BeforeLabelEdit(bool& cancel) const;
    /// Renames the selected node's file and its list entry. If the file cannot be renamed, the old
    /// label stays (`cancel`) and the editor opens again. If the new name differs only in case, or
    /// if its ending does not match the node's file type, only the label changes.
    void TreeView1_AfterLabelEdit(bool& cancel, const std::string& newText);

  private:
    Status rename(const std::string& newText);
    Status renameFirst(const std::string& oldName, const std::string& newText,
                       std::initializer_list<ListBox*> lists);
    void takeAsSelection(const NodeRef& node);

    const Platform& platform_;
    ProcessState& process_;
    Form1& form_;
    DragState& drag_;
};

} // namespace sonarith
