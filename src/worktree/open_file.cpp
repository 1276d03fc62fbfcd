// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/open_file.h"

namespace sonarith {

OpenFile::OpenFile(FileDialog& CommonDialog1, const ProcessState& process, Form1& form,
                   FileAdder& adder)
    : CommonDialog1_(CommonDialog1), process_(process), adder_(adder) {
    form.mnuOpenfile.onClick = [this] {
        mnuOpenfile_Click();
    };
}

void OpenFile::mnuOpenfile_Click() {
    CommonDialog1_
        .open({.title = "Select WAV or MP3 file",
               .filter = "WAV, MP3|*.wav;*.mp3",
               .defaultExtension = "wav",
               .initialFolder = process_.settings.decodePath,
               .fileName = FileName_})
        .storeIn(FileName_);
    if (FileName_.empty()) {
        return;
    }
    // After a cancel, FileName_ is still the name from the previous use. Cmaddfile2 ignores a file
    // that is already in the tree, and adds only WAV and MP3 files.
    adder_.Cmaddfile2(FileName_);
}

} // namespace sonarith
