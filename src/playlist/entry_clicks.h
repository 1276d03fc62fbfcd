// SPDX-License-Identifier: GPL-3.0-or-later
// Actions on an entry of the playlist: a click makes its file the edited one, and two buttons play
// and stop it.
#pragma once

#include "forms/windows.h"
#include "worktree/add_file.h"

namespace sonarith {

class EntryClicks {
  public:
    /// Sets the handlers of List2, Command11 and Command12. Both must outlive this.
    EntryClicks(Windows& windows, FileAdder& adder);
    EntryClicks(const EntryClicks&) = delete;
    EntryClicks& operator=(const EntryClicks&) = delete;

    /// Reads header and tag of the selected entry; with Check11 ticked it then adds the file to the
    /// work tree, unless a line of the main window's list matches it. Yields.
    void List2_Click();
    /// Plays the selected entry, even if another one is playing.
    void Command11_Click();
    void Command12_Click();

  private:
    [[nodiscard]] bool mainListContains(const std::string& path) const;

    FrmPlayList& form_;
    Form1& mainForm_;
    FileAdder& adder_;
};

} // namespace sonarith
