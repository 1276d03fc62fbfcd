// SPDX-License-Identifier: GPL-3.0-or-later
// What the file finder's window does on its events: starts and stops a search, and acts on a found
// file. The search itself is search_engine.h; the widgets are elsewhere.
#pragma once

#include "finder/search_engine.h"
#include "forms/frm_search.h"
#include "platform/platform.h"
#include "worktree/add_file.h"
#include "worktree/work_tree.h"

namespace sonarith {

class FinderWindow {
  public:
    /// Makes its procedures the handlers of the form's events. All must outlive this.
    FinderWindow(const Platform& platform, FrmSearch& finder, SearchEngine& engine,
                 FileAdder& adder, WorkTree& tree);
    FinderWindow(const FinderWindow&) = delete;
    FinderWindow& operator=(const FinderWindow&) = delete;

    void Form_Load();

    /// Starts a search or stops the one that runs, by its caption. Returns at the search's end.
    void Command1_Click();
    /// Closes the window. A search that runs ends at its next step.
    void cmdend_Click();

    void zFileExt_Change();
    void lbltime_Change();
    void Dir1_Change();
    /// A drive that cannot be entered leaves both lists where they were.
    void Drive1_Change();

    void lstfiles_MouseDown(MouseButtons buttons);
    void mnuSeelectfile_Click();
    void mnuRemoveFile_Click();
    /// Asks before it deletes.
    void mnuDelete_Click();
    void mnuClose_Click();

    /// Removes each folder of List1 that stands there before. Nothing calls it.
    void RemoveDuplicateDirs();
    /// What mnuRemoveFile_Click() does. Nothing calls it.
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
