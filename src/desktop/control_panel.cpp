// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/control_panel.h"

namespace sonarith {

namespace {
/// The tray icon's tip for the first second, before the main window's title replaces it.
constexpr const char* firstTip = "Sonarith";
} // namespace

void minimizeToTray(Form& window, const Tray& tray) {
    if (tray.hostPresent()) {
        window.hide();
        return;
    }
    // The request precedes setVisible(), so that a hidden window is minimized at once and does not
    // appear in full first.
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
    // Deliberate: deletes the same icon again, which fails.
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
    // Usually this call ends the process. It returns if Form1 is not loaded, or is already being
    // unloaded.
    windows_.Form1.unload();
    form_.unload();
    platform_.loop.endProgram();
}

/// Runs when a tray host has started or ended. The icon needs no action here, but the main window
/// must not stay hidden while no tray host shows the icon.
void ControlPanel::followHost() {
    if (form_.loaded() && !windows_.Form1.visible()) {
        minimizeToTray(windows_.Form1, platform_.tray);
    }
}

} // namespace sonarith
