// SPDX-License-Identifier: GPL-3.0-or-later
#include "playlist/entry_clicks.h"

#include <algorithm>
#include <string>

#include "platform/text/blanks.h"
#include "platform/text/wildcard.h"

namespace sonarith {

EntryClicks::EntryClicks(Windows& windows, FileAdder& adder)
    : form_(windows.frmPlayList), mainForm_(windows.Form1), adder_(adder) {
    form_.List2.onClick = [this] {
        List2_Click();
    };
    form_.Command11.onClick = [this] {
        Command11_Click();
    };
    form_.Command12.onClick = [this] {
        Command12_Click();
    };
}

void EntryClicks::List2_Click() {
    ListBox& list = form_.List2;
    if (list.listCount() == 0) {
        return;
    }
    form_.Text5.setText(withoutBlanksAround(list.text()));
    form_.cmdHdr2.click();
    if (form_.Check11.value() != 0 && !mainListContains(withoutBlanksAround(list.text()))) {
        adder_.Cmaddfile2(list.text());
    }
}

/// Deliberate: compares only as many lines of the main window's list of MP3 files as the playlist
/// has entries. A file further down in the main window's list is not found. FileAdder nevertheless
/// does not add that file again, because it checks whether the work tree already contains the file.
bool EntryClicks::mainListContains(const std::string& path) const {
    // Compares no lines after the end of the main window's list: there, list(i) returns an empty
    // text, which a playlist entry of blanks would match.
    const int compared = std::min(form_.List2.listCount(), mainForm_.List2.listCount());
    for (int i = 0; i < compared; ++i) {
        if (matches(path, mainForm_.List2.list(i))) {
            return true;
        }
    }
    return false;
}

void EntryClicks::Command11_Click() {
    if (form_.List2.listCount() == 0) {
        return;
    }
    ActiveMP3& player = *form_.ActiveMP31;
    if (player.setSourceFile(withoutBlanksAround(form_.List2.text())).ok()) {
        player.Play().passOver();
    }
}

void EntryClicks::Command12_Click() {
    form_.ActiveMP31->Stop().passOver();
}

} // namespace sonarith
