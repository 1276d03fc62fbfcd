// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/open_file.h"

namespace sonarith {

void OpenFile::mnuOpenfile_Click() {
    CommonDialog1_
        .open({.title = "Select WAV or MP3 file",
               .filter = "WAV, MP3|*.wav;*.mp3",
               .defaultExtension = "wav",
               .fileName = FileName_})
        .storeIn(FileName_);
    if (FileName_.empty()) {
        return;
    }
    // After a cancel it is the name of the time before, which stands in the tree and is turned
    // away there. Nothing here looks at the ending: the dialog's filter is the only guard.
    adder_.Cmaddfile2(FileName_);
}

} // namespace sonarith
