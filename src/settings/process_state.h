// SPDX-License-Identifier: GPL-3.0-or-later
// Holds the process-wide variables of the logic. The program has one instance, which its classes
// get by reference; each test creates a new instance. Not thread-safe: for the logic thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/mixer.h"
#include "platform/window_region.h"
#include "settings/app_settings.h"

namespace sonarith {

struct ProcessState {
    /// Requests every running job to end.
    bool stopRequested = false;
    /// Set by the main window's "Cancel" (CaptureMonitor::Command2_Click()); nothing ever clears
    /// it.
    bool cancelRequested = false;
    /// True from the start of a decoding until its worker window is unloaded.
    bool workerBusy = false;
    /// The WAV file being captured or the MP3 file being decoded.
    std::string currentFile;
    /// The WAV file that a decoding writes.
    std::string currentWavFile;
    /// The number of the track that was last captured or clicked in the tree; 0 at first. The
    /// "play" buttons of the player and of the CD bar play from this track.
    std::int32_t currentTrack = 0;
    /// The counter of DecodingDriver's loops. The player also stores the status of each unchecked
    /// command (CommandCheck::unchecked) here, even while a loop yields.
    std::int32_t fileIndex = 0;
    /// Whether the player's window is loaded.
    bool PlayerOpen = false;
    /// True from a click on the player's "pause" until the next click on its "play".
    bool CDPaused = false;
    /// Result of MixerAccess's last read or write of a value; only MixerAccess uses it.
    MixerResult mixerLastError = MixerResult::noError;
    /// The last region that was built from a picture.
    std::optional<sonarith::WindowRegion> WindowRegion;
    /// The folder part, with its trailing backslash, of the last path passed to SplitPath().
    std::string SplitDir;
    /// Root, size and free space of the drive whose space was last measured.
    std::string DriveName;
    std::int64_t DriveTotalBytes = 0;
    std::int64_t DriveFreeBytes = 0;
    AppSettings settings;
};

} // namespace sonarith
