// SPDX-License-Identifier: GPL-3.0-or-later
#include "finder/finder_window.h"

#include <string>

#include "platform/centred_form.h"
#include "platform/text/unicode.h"
#include "settings/destroy_file.h"

namespace sonarith {

FinderWindow::FinderWindow(const Platform& platform, FrmSearch& finder, SearchEngine& engine,
                           FileAdder& adder, WorkTree& tree)
    : platform_(platform), finder_(finder), engine_(engine), adder_(adder), tree_(tree) {
    wireEvents();
}

void FinderWindow::wireEvents() {
    finder_.onLoad = [this] {
        Form_Load();
    };
    finder_.Command1.onClick = [this] {
        Command1_Click();
    };
    finder_.cmdend.onClick = [this] {
        cmdend_Click();
    };
    finder_.zFileExt.onChange = [this] {
        zFileExt_Change();
    };
    finder_.lbltime.onChange = [this] {
        lbltime_Change();
    };
    finder_.Dir1.onChange = [this] {
        Dir1_Change();
    };
    finder_.Drive1.onChange = [this] {
        Drive1_Change();
    };
    finder_.lstfiles.onMouseDown = [this](MouseButtons buttons) {
        lstfiles_MouseDown(buttons);
    };
    finder_.mnuSeelectfile.onClick = [this] {
        mnuSeelectfile_Click();
    };
    finder_.mnuRemoveFile.onClick = [this] {
        mnuRemoveFile_Click();
    };
    finder_.mnuDelete.onClick = [this] {
        mnuDelete_Click();
    };
    finder_.mnuClose.onClick = [this] {
        mnuClose_Click();
    };
}

void FinderWindow::Form_Load() {
    // A search that was ended by the previous close of the window has not reset the counters.
    finder_.DirCount = 0;
    finder_.FileCount = 0;
    centreOnScreen(finder_, platform_.shell);
}

void FinderWindow::Command1_Click() {
    CommandButton& button = finder_.Command1;
    if (button.caption() == searchCaption) {
        finder_.chkhidelist.setVisible(false);
        finder_.lstfiles.clear();
        finder_.lstdirs.clear();
        finder_.List1.clear();
        button.setCaption(continueCaption);
    }
    if (button.caption() == continueCaption) {
        startSearch();
    } else if (button.caption() == stopCaption) {
        stopSearch();
    }
}

void FinderWindow::startSearch() {
    finder_.Command1.setEnabled(false);
    finder_.Command1.setCaption(stopCaption);
    const bool listsShown = finder_.chkhidelist.value() == 0;
    finder_.List1.setVisible(listsShown);
    finder_.lstfiles.setVisible(listsShown);
    engine_.SearchFiles();
}

/// Runs inside the search that it stops; the end of that search overwrites most of the values that
/// are set here.
void FinderWindow::stopSearch() {
    finder_.lstdirs.setVisible(true);
    finder_.lstfiles.setVisible(true);
    countFiles(finder_);
    finder_.lbltime.setCaption(noTimeCaption);
    finder_.Command1.setCaption(searchCaption);
    showSummary(finder_);
    reopenControls(finder_);
    finder_.lstdirs.clear();
    finder_.List1.setVisible(true);
    finder_.lstfiles.setVisible(true);
}

void FinderWindow::cmdend_Click() {
    finder_.unload();
}

void FinderWindow::zFileExt_Change() {
    finder_.zFileExt.setText(lowerCase(finder_.zFileExt.text()));
}

void FinderWindow::lbltime_Change() {
    constexpr std::size_t longestCaption = 200; // characters that fit into the label
    if (characterCount(finder_.lbltime.caption()) > longestCaption) {
        finder_.lbltime.setCaption(finder_.lstdirs.list(0) + "...");
    }
}

void FinderWindow::Dir1_Change() {
    finder_.Drive1.setDrive(finder_.Dir1.path()).passOver();
}

void FinderWindow::Drive1_Change() {
    const std::string drive = finder_.Drive1.drive();
    if (lowerCase(finder_.Dir1.path()).starts_with(drive)) {
        return; // Dir1 is already on this drive
    }
    if (!finder_.Dir1.setPath(drive).ok()) {
        Dir1_Change();
    }
}

void FinderWindow::lstfiles_MouseDown(MouseButtons buttons) {
    const std::string file = lowerCase(finder_.lstfiles.text());
    if (buttons.right && (file.ends_with(".wav") || file.ends_with(".mp3"))) {
        finder_.popupRequested.emit(finder_.mnupopup);
    }
}

void FinderWindow::mnuSeelectfile_Click() {
    adder_.Cmaddfile2(finder_.lstfiles.text());
    tree_.showfiles3();
}

void FinderWindow::mnuRemoveFile_Click() {
    ListBox& files = touched(finder_).lstfiles;
    files.removeItem(files.listIndex()).passOver();
}

void FinderWindow::mnuDelete_Click() {
    const BoxAnswer answer =
        platform_.boxes.show("Are you sure you want to delete this file?", BoxIcon::warning,
                             BoxButtons::yesNoCancel, "Delete File");
    if (answer != BoxAnswer::yes) {
        return;
    }
    // If the window was closed while the box was open, no file is selected now: the path is empty,
    // and nothing is deleted.
    p_DestroyFile(touched(finder_).lstfiles.text(), platform_.files, platform_.loop).passOver();
    platform_.loop.yield();
    // Deliberate: the line is removed even if the file was not deleted.
    mnuRemoveFile_Click();
    tree_.showfiles3();
}

void FinderWindow::mnuClose_Click() {
    finder_.unload();
}

void FinderWindow::RemoveDuplicateDirs() {
    ListBox& folders = finder_.List1;
    for (int kept = 0; kept < folders.listCount(); ++kept) {
        for (int i = kept + 1; i < folders.listCount(); ++i) {
            if (folders.list(i) == folders.list(kept)) {
                folders.removeItem(i).passOver();
                --i;
            }
        }
    }
}

void FinderWindow::RemoveSelectedFile() {
    mnuRemoveFile_Click();
}

} // namespace sonarith
