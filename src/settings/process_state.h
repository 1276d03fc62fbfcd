// SPDX-License-Identifier: GPL-3.0-or-later
// The process-wide variables: one instance for each program, handed to every job by reference. All
// are plain values on the one thread; a test makes a fresh one. No behaviour lives here.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/mixer.h"
#include "platform/window_region.h"
#include "settings/app_settings.h"

namespace sonarith {

struct ProcessState {
    /// Asks every running job to end.
    bool stopRequested = false;
    /// Set by Command2_Click; nothing ever clears it.
    bool cancelRequested = false;
    /// From the start of a decoding until its worker window has unloaded.
    bool workerBusy = false;
    /// The WAV under capture or the MP3 under decoding.
    std::string currentFile;
    /// The WAV that a decoding writes.
    std::string currentWavFile;
    /// The track in hand; the tree's mouse release sets it too, and the player plays it.
    std::int32_t currentTrack = 0;
    /// Shared loop counter, valid only inside the loop that set it; also takes the results of the
    /// player's unchecked commands.
    std::int32_t fileIndex = 0;
    /// The player window is loaded.
    bool PlayerOpen = false;
    /// "pause" was pressed on the player.
    bool CDPaused = false;
    /// How the last read or write of a mixer control's value ended; nothing tests it.
    MixerResult mixerLastError = MixerResult::noError;
    /// The region that was built last from a picture.
    std::optional<sonarith::WindowRegion> WindowRegion;
    /// The folder half, with its trailing backslash, of the last path given to SplitPath().
    std::string SplitDir;
    /// Root of the drive that was looked at last for its space, and its bytes.
    std::string DriveName;
    std::int64_t DriveTotalBytes = 0;
    std::int64_t DriveFreeBytes = 0;
    AppSettings settings;
};

} // namespace sonarith
