// SPDX-License-Identifier: GPL-3.0-or-later
// Turns the selected node into an action, and puts the window back to rest when that has ended. The
// actions themselves are procedures of the main window.
#pragma once

#include <string>

#include "forms/windows.h"
#include "settings/process_state.h"

namespace sonarith {

class ActionStarter {
  public:
    /// Becomes the handler of CmdSelectAction. All outlive this.
    ActionStarter(ProcessState& process, Windows& windows);
    ActionStarter(const ActionStarter&) = delete;
    ActionStarter& operator=(const ActionStarter&) = delete;

    /// The button "Start ". Returns only when the action has ended.
    void CmdSelectAction_Click();

  private:
    void runActionFor(const std::string& text);

    ProcessState& process_;
    Windows& windows_;
    Form1& form_;
};

} // namespace sonarith
