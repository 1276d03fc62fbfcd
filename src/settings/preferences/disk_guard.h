// SPDX-License-Identifier: GPL-3.0-or-later
// Monitors the free space of the destination's drive while the timer tmrWarning runs: warns below
// one limit and stops the action below another. The warning is a label of the main window, not a
// message box. Also fills the preferences' list of drives. Other classes control tmrWarning. If the
// warning is switched on, the start of an action starts the timer. The end of the action, or of its
// first captured track, stops the timer.
#pragma once

#include "desktop/system.h"
#include "extraction/capture_monitor.h"
#include "forms/windows.h"
#include "platform/platform.h"
#include "settings/process_state.h"

namespace sonarith {

class DiskGuard {
  public:
    /// Sets the handler of tmrWarning. All parameters must outlive this object.
    DiskGuard(const Platform& platform, ProcessState& process, Windows& windows,
              const System& system, CaptureMonitor& monitor);
    DiskGuard(const DiskGuard&) = delete;
    DiskGuard& operator=(const DiskGuard&) = delete;

    /// Lists the fixed drives, except drive A, in Text6 of the preferences' window, with their free
    /// MB (of 1,000,000 bytes). Writes the destination's drive to Label3 and its free MB to Label4.
    /// The two labels do not change if the destination is not on a listed drive. Loads the window
    /// if it is not loaded; the load yields.
    void RefreshDriveSpace();
    /// Calls RefreshDriveSpace(), then compares the free space with each limit that is switched on.
    /// Below the warning limit, shows the warning. Below the stop limit, shows the warning, stops
    /// the action, and yields.
    void tmrWarning_Timer();

  private:
    const Platform& platform_;
    ProcessState& process_;
    Windows& windows_;
    Form1& form_;
    const System& system_;
    CaptureMonitor& monitor_;
};

} // namespace sonarith
