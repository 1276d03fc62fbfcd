// SPDX-License-Identifier: GPL-3.0-or-later
// The preferences' window, the guard on disk space, which fills a part of it, and the system
// information that both use. It has no behaviour of its own.
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
    /// All must outlive this. `monitor` stops everything when a disk is nearly full.
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
