// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/control_panel.h"

namespace sonarith {

namespace {
/// The tip until the main window's title takes its place, a second after the load.
constexpr const char* firstTip = "Sonarith";
} // namespace

void minimizeToTray(Form& window, const Tray& tray) {
    if (tray.hostPresent()) {
        window.hide();
        return;
    }
    // In this order: a hidden window appears as its entry at once, and not in full before.
    window.minimizeRequested.emit();
    window.setVisible(true);
}

ControlPanel::ControlPanel(const Platform& platform, Windows& windows)
    : platform_(platform),
      windows_(windows),
      form_(windows.frmpopup),
      icons_(platform.tray),
      hostChanged_(platform.tray.hostChanged.connect([this] { followHost(); })) {
    wireEvents();
    platform_.tray.setMenu(form_.Popup);
}

void ControlPanel::wireEvents() {
    form_.onLoad = [this] {
        Form_Load();
    };
    form_.onUnload = [this] {
        Form_Unload();
    };
    form_.Timer1.onTimer = [this] {
        Timer1_Timer();
    };
    form_.Timer2.onTimer = [this] {
        Timer2_Timer();
    };
    form_.Popup.onOpen = [this] {
        Popup_Open();
    };
    form_.mnuStopencoding.onClick = [this] {
        mnuStopencoding_Click();
    };
    form_.Exit.onClick = [this] {
        Exit_Click();
    };
    form_.mnuEnd.onClick = [this] {
        mnuEnd_Click();
    };
}

void ControlPanel::Form_Load() {
    keptIcon_ = form_.Icon;
    icons_.AddTrayIcon(*keptIcon_, form_, firstTip);
    form_.hide();
}

void ControlPanel::Form_Unload() {
    if (keptIcon_) {
        icons_.DeleteTrayIcon(*keptIcon_);
    }
    // The same entry once more, which fails: it would be another one had the form changed its icon.
    icons_.DeleteTrayIcon(form_.Icon);
    keptIcon_.reset();
}

void ControlPanel::Timer1_Timer() {
    if (keptIcon_) {
        icons_.ModifyTrayIcon(*keptIcon_, form_, windows_.Form1.caption());
    }
    platform_.loop.yield();
}

void ControlPanel::Timer2_Timer() {
    form_.setCaption(windows_.Form1.caption());
    platform_.loop.yield();
}

void ControlPanel::Popup_Open() {
    form_.setCaption(windows_.Form1.caption());
}

void ControlPanel::mnuStopencoding_Click() {
    windows_.Form1.show();
    windows_.Form1.Command2.click();
    form_.unload();
}

void ControlPanel::Exit_Click() {
    windows_.Form1.show();
    form_.unload();
}

void ControlPanel::mnuEnd_Click() {
    windows_.Form6.unload();
    windows_.Form4.unload();
    // Ends the process by itself, unless an unload is under way already.
    windows_.Form1.unload();
    form_.unload();
    platform_.loop.endProgram();
}

/// The panel has come or gone. An icon that waits for a panel appears by itself; a window that was
/// hidden behind an icon is not to be lost with it.
void ControlPanel::followHost() {
    if (form_.loaded() && !windows_.Form1.visible()) {
        minimizeToTray(windows_.Form1, platform_.tray);
    }
}

} // namespace sonarith
