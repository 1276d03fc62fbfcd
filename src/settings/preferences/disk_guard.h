// SPDX-License-Identifier: GPL-3.0-or-later
// Monitors the free space of the destination's drive while the timer tmrWarning runs: warns below
// one limit and stops the action below another. The warning is a label of the main window, not a
// message box. Also fills the preferences' list of drives. Other classes control tmrWarning: the
// start of an action starts the timer if the warning is switched on; the end of the action, or of
// the first captured track, stops it.
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

    /// Writes each fixed drive and its free MB (1 MB is 1,000,000 bytes) to Text6 of the
    /// preferences' window, except drive A and drives without a size. Writes the destination's
    /// drive to Label3 and its free MB to Label4; the two labels do not change if the destination
    /// is not on such a drive. Loads the preferences' window if it is not loaded; the load yields.
    void RefreshDriveSpace();
    /// Calls RefreshDriveSpace(), then compares the free space with each limit that is switched
    /// on. Below the warning limit, shows the warning. Below the stop limit, shows the warning,
    /// stops the action, and then yields (in addition to a yield of RefreshDriveSpace()).
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
