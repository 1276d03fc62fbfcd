// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/frm_search.h"

#include <limits>
#include <string>

namespace sonarith {

FrmSearch::FrmSearch(const FileSystem& files, Directories& directories)
    : Form("frmsearch", "File Finder"),
      Drive1(*this, "Drive1", directories, files),
      Dir1(*this, "Dir1", directories, files) {
    // The limits apply only to typing, not to texts that code sets. The dot counts as a character
    // of the extension.
    zFileExt.setTypingLimit(4);
    Text1.setTypingLimit(100);
    mnupopup.setVisible(false);
    setDesignedSize(9000_twips, 6900_twips);
    keepDesign();
}

void countFiles(FrmSearch& finder) {
    if (const int count = finder.lstfiles.listCount();
        count <= std::numeric_limits<std::int16_t>::max()) {
        finder.FileCount = static_cast<std::int16_t>(count);
    }
}

void showSummary(FrmSearch& finder) {
    finder.Label1.setCaption("Directories: " + std::to_string(finder.DirCount) +
                             "   Files:  " + std::to_string(finder.FileCount));
    finder.DirCount = 0;
    finder.FileCount = 0;
}

void reopenControls(FrmSearch& finder) {
    finder.Drive1.setEnabled(true);
    finder.Text1.setEnabled(true);
    finder.zFileExt.setEnabled(true);
    finder.chkhidelist.setVisible(true);
}

} // namespace sonarith
