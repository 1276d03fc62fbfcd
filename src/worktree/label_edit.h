// SPDX-License-Identifier: GPL-3.0-or-later
// In-place editing of the work tree's labels: which nodes may be renamed, and the renaming of file
// and list entry that a new label asks for. The editor itself belongs to whoever shows the tree.
#pragma once

#include <string>

#include "forms/form1.h"
#include "platform/file_system.h"
#include "platform/result.h"
#include "settings/process_state.h"
#include "worktree/drag_state.h"

namespace sonarith {

class LabelEdit {
  public:
    LabelEdit(Form1& form, ProcessState& process, FileSystem& files, DragState& drag)
        : form_(form), process_(process), files_(files), drag_(drag) {}

    /// Refuses the edit (`cancel`) unless the selected node's text ends in ".wav", ".WAV", ".mp3"
    /// or ".MP3".
    void TreeView1_BeforeLabelEdit(bool& cancel) const;
    /// Renames the selected node's file and its list entry. If the file cannot be renamed, the old
    /// label stays (`cancel`) and the editor opens again. A new name of another type renames
    /// nothing, and is left to the tree as a label.
    void TreeView1_AfterLabelEdit(bool& cancel, const std::string& newText);

  private:
    Status rename(const std::string& newText);
    Status renameFirst(const std::string& oldName, const std::string& newText,
                       std::initializer_list<ListBox*> lists);
    void takeAsSelection(const NodeRef& node);

    Form1& form_;
    ProcessState& process_;
    FileSystem& files_;
    DragState& drag_;
};

} // namespace sonarith
