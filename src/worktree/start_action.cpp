// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/start_action.h"

#include "worktree/tree_nodes.h"

namespace sonarith {

ActionStarter::ActionStarter(ProcessState& process, Windows& windows)
    : process_(process), windows_(windows), form_(windows.Form1) {
    form_.CmdSelectAction.onClick = [this] {
        CmdSelectAction_Click();
    };
}

void ActionStarter::CmdSelectAction_Click() {
    if (process_.PlayerOpen) {
        // Switches off the player, which may be using the disc.
        windows_.Form4.Command6.click();
    }
    form_.Label5.setVisible(false);
    if (process_.settings.hdWarning == 1) {
        form_.tmrWarning.setEnabled(true);
    }
    process_.stopRequested = false;
    if (process_.settings.minimizeOnStart == 1) {
        form_.mnuMinimize.click();
    }
    runActionFor(textOf(form_.TreeView1.selectedItem()));
    // These steps run even if the action failed or was stopped, and if no action was started.
    form_.Timer1.setEnabled(true);
    form_.tmrWarning.setEnabled(false);
    form_.tmrRecord.setEnabled(false);
    windows_.frmpopup.unload();
    form_.Enablem();
    form_.show();
}

void ActionStarter::runActionFor(const std::string& text) {
    // The order matters: a file whose name begins with "Track" counts as a track.
    if (text == selectedTracksText || text == availableTracksText || isTrackText(text)) {
        form_.cmdStart.click();
    } else if (text.ends_with(".mp3") || text == selectedMp3FilesText || text == mp3FilesText) {
        form_.CmdDecoder.click();
    }
}

} // namespace sonarith
