// SPDX-License-Identifier: GPL-3.0-or-later
// Owns the parts of the extraction (inspection, monitor, capture, preview) and passes the main
// window to each of them. This struct adds no behaviour.
#pragma once

#include <cstdint>

#include "extraction/capture_monitor.h"
#include "extraction/capture_state.h"
#include "extraction/disc_inspection.h"
#include "extraction/track_capture.h"
#include "extraction/track_preview.h"
#include "forms/windows.h"
#include "platform/platform.h"
#include "settings/process_state.h"
#include "worktree/add_file.h"

namespace sonarith {

struct Extraction {
    /// All parameters must outlive this object.
    Extraction(const Platform& platform, ProcessState& process, Windows& windows, FileAdder& files)
        : inspection(platform, windows.Form1, state),
          monitor(platform, process, windows, state, files,
                  [this](std::int32_t track) { capture.StartTrackRecording2(track); }),
          capture(platform, process, windows, state, monitor),
          preview(platform, process, windows.Form1, state) {}

    CaptureState state;
    DiscInspection inspection;
    CaptureMonitor monitor;
    TrackCapture capture;
    TrackPreview preview;
};

} // namespace sonarith
