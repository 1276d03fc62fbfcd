// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the handler of the preferences' window, the disk guard, and the system information that
// the guard reads. The guard also fills a part of the window. This struct adds no behaviour.
#pragma once

#include "desktop/system.h"
#include "extraction/capture_monitor.h"
#include "forms/windows.h"
#include "platform/platform.h"
#include "settings/preferences/disk_guard.h"
#include "settings/preferences/preferences_window.h"
#include "settings/process_state.h"

namespace sonarith {

struct Preferences {
    /// All parameters must outlive this object. The guard uses `monitor` to stop every job when the
    /// destination's drive has too little free space.
    Preferences(const Platform& platform, ProcessState& process, Windows& windows,
                CaptureMonitor& monitor)
        : system(platform.system, platform.files),
          guard(platform, process, windows, system, monitor),
          window(platform, process, windows, guard) {}

    System system;
    DiskGuard guard;
    PreferencesWindow window;
};

} // namespace sonarith
