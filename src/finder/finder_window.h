// SPDX-License-Identifier: GPL-3.0-or-later
// Handles the events of the file finder's window: starts and stops a search, and handles commands
// for a found file. SearchEngine does the search; ui/finder_layout.h creates the widgets.
#pragma once

#include "finder/search_engine.h"
#include "forms/frm_search.h"
#include "platform/platform.h"
#include "worktree/add_file.h"
#include "worktree/work_tree.h"

namespace sonarith {

class FinderWindow {
  public:
    /// Sets the handlers of the form's events. All parameters must outlive this object.
    FinderWindow(const Platform& platform, FrmSearch& finder, SearchEngine& engine,
                 FileAdder& adder, WorkTree& tree);
    FinderWindow(const FinderWindow&) = delete;
    FinderWindow& operator=(const FinderWindow&) = delete;

    void Form_Load();

    /// Starts a search or stops the running search, depending on the button's caption. A call that
    /// starts a search returns at the end of that search.
    void Command1_Click();
    /// Closes the window. A running search ends when its current yield returns.
    void cmdend_Click();

    void zFileExt_Change();
    void lbltime_Change();
    void Dir1_Change();
    /// If the chosen drive cannot be entered, the folder does not change, and Drive1 returns to the
    /// folder's drive if that drive still exists.
    void Drive1_Change();

    void lstfiles_MouseDown(MouseButtons buttons);
    void mnuSeelectfile_Click();
    void mnuRemoveFile_Click();
    /// Asks for confirmation, then deletes the selected file.
    void mnuDelete_Click();
    void mnuClose_Click();

    /// Removes each line of List1 that also occurs earlier in the list. Nothing in the program
    /// calls this function.
    void RemoveDuplicateDirs();
    /// Does the same as mnuRemoveFile_Click(). Nothing in the program calls this function.
    void RemoveSelectedFile();

  private:
    void wireEvents();
    void startSearch();
    void stopSearch();

    const Platform& platform_;
    FrmSearch& finder_;
    SearchEngine& engine_;
    FileAdder& adder_;
    WorkTree& tree_;
};

} // namespace sonarith
