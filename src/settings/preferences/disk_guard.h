// SPDX-License-Identifier: GPL-3.0-or-later
// Watches the free space of the destination's drive while an action runs: a warning below one
// limit, the stop of the work below another. Also fills the preferences' list of drives. It shows
// no message, and does not switch its timer on: the start of an action does.
#pragma once

#include "desktop/system.h"
#include "extraction/capture_monitor.h"
#include "forms/windows.h"
#include "platform/platform.h"
#include "settings/process_state.h"

namespace sonarith {

class DiskGuard {
  public:
    /// Becomes the handler of tmrWarning. All outlive this.
    DiskGuard(const Platform& platform, ProcessState& process, Windows& windows,
              const System& system, CaptureMonitor& monitor);
    DiskGuard(const DiskGuard&) = delete;
    DiskGuard& operator=(const DiskGuard&) = delete;

    /// Writes the fixed drives to Text6 of the preferences, and the destination's drive to Label3
    /// and its free MB (1,000,000 bytes) to Label4. Those two stay as they were if the destination
    /// lies on no fixed drive. Loads the preferences if they are not loaded, which yields.
    void RefreshDriveSpace();
    /// One look at the limits. Yields after a stop.
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
