// SPDX-License-Identifier: GPL-3.0-or-later
// Handles actions on an entry of the playlist: a click makes the entry's file the edited file
// (Text5), one button plays the selected entry, and another button stops playback.
#pragma once

#include "forms/windows.h"
#include "worktree/add_file.h"

namespace sonarith {

class EntryClicks {
  public:
    /// Sets the handlers of List2, Command11 and Command12. Both parameters must outlive this
    /// object.
    EntryClicks(Windows& windows, FileAdder& adder);
    EntryClicks(const EntryClicks&) = delete;
    EntryClicks& operator=(const EntryClicks&) = delete;

    /// Makes the file of the selected entry the edited file and reads its header and tag. Then,
    /// if Check11 is ticked, adds the file to the work tree, unless mainListContains() returns true
    /// for its path. Yields.
    void List2_Click();
    /// Plays the selected entry, even if another entry is playing.
    void Command11_Click();
    void Command12_Click();

  private:
    /// Whether a line of the main window's list of MP3 files matches `path`. Each line is used as a
    /// pattern. Deliberate: of that list, only the first n lines are compared, where n is the
    /// number of entries of the playlist. A match further down is not found.
    [[nodiscard]] bool mainListContains(const std::string& path) const;

    FrmPlayList& form_;
    Form1& mainForm_;
    FileAdder& adder_;
};

} // namespace sonarith
