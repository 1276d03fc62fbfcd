// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/form1.h"

#include <array>
#include <utility>

namespace sonarith {

using namespace std::chrono_literals;

Form1::Form1(EventLoop& loop, const ProcessState& state, std::vector<Form*> closedByActions)
    : Form("Form1", applicationTitle),
      Timer1(*this, loop, "Timer1", 5000ms),
      tmrRecord(*this, loop, "tmrRecord", 100ms),
      tmrWarning(*this, loop, "tmrWarning", 2000ms),
      Timeravi(*this, loop, "Timeravi", 1000ms),
      state_(state),
      closedByActions_(std::move(closedByActions)) {
    Picture5.setWidth(gripWidth);
    TreeView1.setLeft(gripWidth);
    Image3.setToolTip("Hand grip");
    Image4.setToolTip("Destination");
    Image5.setToolTip("Source");
    CmdSelectAction.setToolTip("Start the next action");
    Command2.setToolTip("Cancel the action that is running");
    Command11.setToolTip("Play Selected track");
    Command12.setToolTip("Stop playing CD");
    cmdStart.setToolTip("Start Extracting CD Track");
    Command8.setToolTip("Stop Everything");

    Picture4.setVisible(false);
    mnuToolbar.setChecked(true);
    mnuActivityBar.setChecked(true);
    mnuStatusbar.setChecked(true);
    Label5.setVisible(false);
    Command2.setVisible(false);
    mnupopup.setVisible(false);
    // Opening the popup menu on a node of the tree enables the entries that apply to this node.
    for (MenuItem* entry : {&mnuStart2, &mnuFileRemove, &mnuRemoveDelete}) {
        entry->setEnabled(false);
    }
    cmdStart.setVisible(false);
    CmdDecoder.setVisible(false);
    Command8.setVisible(false);
    Check9.setVisible(false);
    for (ListBox* list : {&lstTracks, &lstRecord, &List1, &List2, &List3, &List4, &List5, &List7}) {
        list->setVisible(false);
    }
    // The designed size is used until a view reports the size that the view's contents need.
    setDesignedSize(designWidth, designHeight);
    setInnerSize(designWidth, designHeight);
    keepDesign();
}

void Form1::Disablem() {
    enableCommands(false);
    for (Form* window : closedByActions_) {
        window->unload();
    }
}

void Form1::Enablem() {
    enableCommands(true);
}

void Form1::enableCommands(bool enabled) {
    const std::array<Control*, 12> commands = {
        &C777,       &Copt,     &C5555555, &Cmdhelp,  &mnuStart2,       &mnuFile,
        &mnuActiopn, &mnuPrefs, &mnuHelp,  &mnupopup, &mnuRemoveDelete, &mnuFileRemove};
    for (Control* command : commands) {
        command->setEnabled(enabled);
    }
}

void Form1::ClearActivity() {
    // Deliberate: a lower-case "a", although the label is designed with "Next Action:".
    Label3.setCaption("Next action:");
    Label2.setCaption(state_.settings.decodePath + "\\");
    setCaption(applicationTitle);
    ProgressBar1.setValue(0).passOver();
    lblStatus.setCaption("");
    Label33.setCaption("");
}

} // namespace sonarith
