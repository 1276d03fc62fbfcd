// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/player_window.h"

namespace sonarith {

namespace {
constexpr Twips cubeHeight = 3480_twips;
} // namespace

PlayerWindow::PlayerWindow(ProcessState& process, Windows& windows, CdCommands& commands,
                           MeterCapture& meterCapture, DiscState& disc)
    : process_(process),
      windows_(windows),
      form_(windows.Form4),
      commands_(commands),
      meterCapture_(meterCapture),
      disc_(disc) {
    form_.onLoad = [this] {
        Form_Load();
    };
    form_.onQueryUnload = [this] {
        Form_QueryUnload();
    };
    form_.onUnload = [this] {
        Form_Unload();
    };
    form_.Command1.onClick = [this] {
        Command1_Click();
    };
    wireMenus();
    wireSurfaces();
}

void PlayerWindow::wireMenus() {
    // Deliberate: an entry acts as a click on its button even if the button is disabled. mnuMinCD
    // and mnuMinimCDp have no action.
    for (MenuItem* entry : {&form_.mnuCDon, &form_.mnuCDonp}) {
        entry->onClick = [this] {
            form_.OptCD.choose();
        };
    }
    for (MenuItem* entry : {&form_.mnuCDOff, &form_.mnuCDOffp}) {
        entry->onClick = [this] {
            form_.optNoCD.choose();
        };
    }
    for (MenuItem* entry : {&form_.mnuPlayCD, &form_.mnuPlayCDp}) {
        entry->onClick = [this] {
            form_.play.click();
        };
    }
    for (MenuItem* entry : {&form_.mnuStopPlay, &form_.mnuStopPlayp}) {
        entry->onClick = [this] {
            form_.stopbtn.click();
        };
    }
    for (MenuItem* entry : {&form_.mnuCubeit, &form_.mnuCubeitp}) {
        entry->onClick = [this] {
            mnuCubeit_Click();
        };
    }
    for (MenuItem* entry : {&form_.mnuUnloadCD, &form_.mnuCloseCDp}) {
        entry->onClick = [this] {
            form_.unload();
        };
    }
}

void PlayerWindow::wireSurfaces() {
    const auto drag = [this](MouseButtons buttons) {
        dragBy(buttons);
    };
    const auto dragOrPopup = [this](MouseButtons buttons) {
        dragBy(buttons);
        openPopupFor(buttons);
    };
    form_.Picture3.onMouseMove = drag;
    form_.Picture4.onMouseMove = drag;
    form_.Picture10.onMouseDown = drag;
    form_.timeWindow.onMouseDown = drag;
    form_.picPeakVol.onMouseDown = dragOrPopup;
    form_.Picture3.onMouseDown = [this](MouseButtons buttons) {
        openPopupFor(buttons);
    };
}

void PlayerWindow::Form_Load() {
    process_.PlayerOpen = true;
    const Form1& main = windows_.Form1;
    form_.setHeight(main.height());
    form_.setTop(main.top());
    form_.setLeft(main.left() + main.width());
    form_.Timer1.setEnabled(false);
    disc_.CDLoaded = false;
    for (CommandButton* button :
         {&form_.Command2, &form_.Command3, &form_.Command4, &form_.Command5}) {
        button->click();
    }
}

void PlayerWindow::Form_QueryUnload() {
    // Saves first, because Command6 switches the player off, which closes the CD device that a
    // running capture uses.
    commands_.saveRunningCapture();
    form_.Command6.click();
}

void PlayerWindow::Form_Unload() {
    process_.PlayerOpen = false;
    commands_.closeAll(CommandCheck::unchecked);
    if (meterCapture_.running()) {
        // The meter's wave input may have been started in a yield of the unload. A closed panel
        // must not keep the input running.
        meterCapture_.StopMeter();
    }
}

void PlayerWindow::Command1_Click() {
    commands_.closeAll(CommandCheck::unchecked);
    commands_.closeAll(CommandCheck::checked);
    form_.unload();
}

void PlayerWindow::mnuCubeit_Click() {
    form_.setHeight(cubeHeight);
}

void PlayerWindow::dragBy(MouseButtons buttons) {
    if (buttons.left) {
        form_.captionGrasped.emit();
    }
}

void PlayerWindow::openPopupFor(MouseButtons buttons) {
    if (buttons.right) {
        form_.popupRequested.emit(form_.mnupopup);
    }
}

} // namespace sonarith
