// SPDX-License-Identifier: GPL-3.0-or-later
// Adds a file that a person picks by hand. Whether it is worth adding is FileAdder's to say.
#pragma once

#include <string>

#include "platform/file_dialog.h"
#include "worktree/add_file.h"

namespace sonarith {

class OpenFile {
  public:
    OpenFile(FileDialog& CommonDialog1, FileAdder& adder)
        : CommonDialog1_(CommonDialog1), adder_(adder) {}

    /// Lets a person choose a file and adds it. Yields while the dialog is up, and as long as
    /// Cmaddfile2 does.
    void mnuOpenfile_Click();

  private:
    FileDialog& CommonDialog1_;
    FileAdder& adder_;
    /// The dialog's file name, kept from use to use.
    std::string FileName_;
};

} // namespace sonarith
