// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the objects that build the work tree and handle its events, and connects them to the main
// window. This struct adds no behaviour.
#pragma once

#include "forms/windows.h"
#include "platform/platform.h"
#include "settings/process_state.h"
#include "worktree/add_file.h"
#include "worktree/drag_state.h"
#include "worktree/folder_scanner.h"
#include "worktree/label_edit.h"
#include "worktree/open_file.h"
#include "worktree/popup_menu.h"
#include "worktree/start_action.h"
#include "worktree/tree_drag.h"
#include "worktree/tree_moves.h"
#include "worktree/tree_selection.h"
#include "worktree/work_tree.h"

namespace sonarith {

struct WorkTreeJobs {
    /// All parameters must outlive this object.
    WorkTreeJobs(const Platform& platform, ProcessState& process, Windows& windows,
                 FolderScanner& finder)
        : adder(platform, process, windows.Form1),
          tree(process, windows.Form1, finder, adder),
          moves(platform.loop, process, windows.Form1, drag),
          selection(platform.loop, process, windows.Form1, drag, moves),
          dragging(windows.Form1, drag, moves),
          labels(platform, process, windows.Form1, drag),
          popup(platform, process, windows.Form1, drag),
          opening(platform.fileDialog, process, windows.Form1, adder),
          starter(process, windows) {}

    DragState drag;
    FileAdder adder;
    WorkTree tree;
    TreeMoves moves;
    TreeSelection selection;
    TreeDrag dragging;
    LabelEdit labels;
    PopupMenu popup;
    OpenFile opening;
    ActionStarter starter;
};

} // namespace sonarith
