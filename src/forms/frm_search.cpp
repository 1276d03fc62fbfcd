// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/frm_search.h"

#include <limits>
#include <string>

namespace sonarith {

FinderForm::FinderForm(Form& frmsearch, const FileSystem& files, const Directories& directories)
    : window(frmsearch), Drive1("Drive1", directories), Dir1("Dir1", directories), files_(files) {
    // The longest extension with its dot, and a name; what code writes has no limit.
    zFileExt.setTypingLimit(4);
    Text1.setTypingLimit(100);
    mnupopup.setVisible(false);
    reset();
}

void FinderForm::reset() {
    for (ListBox* list : {&lstdirs, &List1, static_cast<ListBox*>(&lstfiles)}) {
        list->clear();
        list->setVisible(true);
    }
    zFileExt.setText(".wav");
    for (TextBox* box : {&Text1, &zFileExt2, &Text2}) {
        box->setText("");
    }
    // Not the current folder: a destination that could not be made leaves that at the root of a
    // drive, and a scan from there on would walk all of it.
    const std::string here = files_.programFolder();
    Dir1.reset(here);
    Drive1.reset(here);
    Command1.setCaption(searchCaption);
    Command1.setEnabled(true);
    chkhidelist.setValue(0).passOver();
    lbltime.setCaption(noTimeCaption);
    Label1.setCaption("");
    reopenControls(*this);
}

void countFiles(FinderForm& finder) {
    if (const int count = finder.lstfiles.listCount();
        count <= std::numeric_limits<std::int16_t>::max()) {
        finder.FileCount = static_cast<std::int16_t>(count);
    }
}

void showSummary(FinderForm& finder) {
    finder.Label1.setCaption("Directories: " + std::to_string(finder.DirCount) +
                             "   Files:  " + std::to_string(finder.FileCount));
    finder.DirCount = 0;
    finder.FileCount = 0;
}

void reopenControls(FinderForm& finder) {
    finder.Drive1.setEnabled(true);
    finder.Text1.setEnabled(true);
    finder.zFileExt.setEnabled(true);
    finder.chkhidelist.setVisible(true);
}

} // namespace sonarith
