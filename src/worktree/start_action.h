// SPDX-License-Identifier: GPL-3.0-or-later
// Turns the selected node into an action, and puts the window back to rest when that has ended. The
// actions themselves are procedures of the main window.
#pragma once

#include <functional>
#include <string>

#include "forms/form1.h"
#include "forms/windows.h"
#include "settings/process_state.h"

namespace sonarith {

class ActionStarter {
  public:
    ActionStarter(Form1& form, ProcessState& process, Windows& windows)
        : form_(form), process_(process), windows_(windows) {}

    /// The button "Start ". Returns only when the action has ended.
    void CmdSelectAction_Click();

    /// Switches the player off, which may hold the disc. Empty: there is no player.
    std::function<void()> Form4_Command6_Click;

  private:
    void runActionFor(const std::string& text);

    Form1& form_;
    ProcessState& process_;
    Windows& windows_;
};

} // namespace sonarith
