// SPDX-License-Identifier: GPL-3.0-or-later
// Adds a file to the work tree after the user has picked the file in a dialog. FileAdder decides
// whether the file is accepted.
#pragma once

#include <string>

#include "forms/form1.h"
#include "platform/file_dialog.h"
#include "settings/process_state.h"
#include "worktree/add_file.h"

namespace sonarith {

class OpenFile {
  public:
    /// Sets the handler of mnuOpenfile. All parameters must outlive this object.
    OpenFile(FileDialog& CommonDialog1, const ProcessState& process, Form1& form, FileAdder& adder);
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    /// Lets the user choose a file and adds it. After a cancel, adds the file that was chosen last,
    /// if any. Yields while the dialog is open and during FileAdder::Cmaddfile2.
    void mnuOpenfile_Click();

  private:
    FileDialog& CommonDialog1_;
    const ProcessState& process_;
    FileAdder& adder_;
    /// The file that was chosen last; the dialog opens with it.
    std::string FileName_;
};

} // namespace sonarith
