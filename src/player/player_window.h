// SPDX-License-Identifier: GPL-3.0-or-later
// Handles the window of the CD player's panel (Form4): its load and unload, its menus, and the
// surfaces with which the user drags it. Power, transport, mixer and meter are separate classes.
#pragma once

#include "forms/windows.h"
#include "platform/controls/mouse_buttons.h"
#include "player/cd_commands.h"
#include "player/disc_state.h"
#include "player/meter_capture.h"
#include "settings/process_state.h"

namespace sonarith {

class PlayerWindow {
  public:
    /// Sets the handlers of the window's own events and of its menus, its surfaces and Command1.
    /// All parameters must outlive this object.
    PlayerWindow(ProcessState& process, Windows& windows, CdCommands& commands,
                 MeterCapture& meterCapture, DiscState& disc);
    PlayerWindow(const PlayerWindow&) = delete;
    PlayerWindow& operator=(const PlayerWindow&) = delete;

    /// Places the panel at the main window's right edge and shows the mixer's levels. Then sets the
    /// volumes of master and disc to the maximum. Yields only while the message about a missing
    /// mixer is shown.
    void Form_Load();
    /// Switches the player off; a running capture is stopped and saved first. Yields.
    void Form_QueryUnload();
    /// Closes every device of the process. Yields while a capture that began during the unload is
    /// saved.
    void Form_Unload();

    /// "EXIT": closes every device of the process and then the panel. Yields.
    void Command1_Click();
    /// "Show as Cube": changes the panel's height. The next load of the panel undoes this.
    void mnuCubeit_Click();

  private:
    void wireMenus();
    void wireSurfaces();
    void dragBy(MouseButtons buttons);
    void openPopupFor(MouseButtons buttons);

    ProcessState& process_;
    Windows& windows_;
    Form4& form_;
    CdCommands& commands_;
    MeterCapture& meterCapture_;
    DiscState& disc_;
};

} // namespace sonarith
