// SPDX-License-Identifier: GPL-3.0-or-later
// The process-wide variables: one instance per program, passed by reference to every class of the
// logic. All are plain values on the logic thread; each test creates a new instance. No behaviour
// here.
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
    /// Set by Command2_Click; nothing ever clears it.
    bool cancelRequested = false;
    /// True from the start of a decoding until its worker window is unloaded.
    bool workerBusy = false;
    /// The WAV file being captured or the MP3 file being decoded.
    std::string currentFile;
    /// The WAV that a decoding writes.
    std::string currentWavFile;
    /// The current track; the tree's mouse release sets it too, and the player plays it.
    std::int32_t currentTrack = 0;
    /// Shared loop counter, valid only inside the loop that set it; also takes the results of the
    /// player's unchecked commands.
    std::int32_t fileIndex = 0;
    /// The player window is loaded.
    bool PlayerOpen = false;
    /// "pause" was pressed on the player.
    bool CDPaused = false;
    /// Result of the last read or write of a mixer control; only the code that sets it reads it.
    MixerResult mixerLastError = MixerResult::noError;
    /// The last region that was built from a picture.
    std::optional<sonarith::WindowRegion> WindowRegion;
    /// The folder part, with its trailing backslash, of the last path passed to SplitPath().
    std::string SplitDir;
    /// Root of the drive whose space was last measured, and its bytes.
    std::string DriveName;
    std::int64_t DriveTotalBytes = 0;
    std::int64_t DriveFreeBytes = 0;
    AppSettings settings;
};

} // namespace sonarith
