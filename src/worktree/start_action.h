// SPDX-License-Identifier: GPL-3.0-or-later
// Starts the action for the selected node and resets the main window to idle when the action has
// ended. The handlers of the buttons cmdStart and CmdDecoder perform the actions; this class clicks
// one of these buttons, or none if the node has no action.
#pragma once

#include <string>

#include "forms/windows.h"
#include "settings/process_state.h"

namespace sonarith {

class ActionStarter {
  public:
    /// Sets the click handler of CmdSelectAction, the button "Start ". Both parameters must outlive
    /// this object.
    ActionStarter(ProcessState& process, Windows& windows);
    ActionStarter(const ActionStarter&) = delete;
    ActionStarter& operator=(const ActionStarter&) = delete;

    /// Handles a click on the button "Start ". Returns only when the action has ended.
    void CmdSelectAction_Click();

  private:
    void runActionFor(const std::string& text);

    ProcessState& process_;
    Windows& windows_;
    Form1& form_;
};

} // namespace sonarith
