// SPDX-License-Identifier: GPL-3.0-or-later
// What the hidden window Form6 does: the conversion of one MP3 file to WAV at each of its loads, by
// the control ActiveMP31. Which file is in work, and what becomes of the WAV, is decided by the
// decoding driver.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "forms/windows.h"
#include "platform/platform.h"
#include "platform/result.h"
#include "settings/process_state.h"

namespace sonarith {

/// The WAV that an MP3 becomes: in the destination folder, by the MP3's base name alone, so that
/// files of one name in different folders share one WAV. Errors: as FileBaseName().
[[nodiscard]] Result<std::string> wavPathFor(const std::string& mp3Path,
                                             const ProcessState& process);

/// A tick may wait while its window is unloaded and loaded again for the next file. It then leaves
/// window and control alone: they are the next file's.
class ConversionWorker {
  public:
    /// Becomes the handler of Form6's events. All outlive this.
    ConversionWorker(const Platform& platform, ProcessState& process, Windows& windows);
    ConversionWorker(const ConversionWorker&) = delete;
    ConversionWorker& operator=(const ConversionWorker&) = delete;

    /// Starts on currentFile; with stopRequested set, unloads the window instead.
    void Form_Load();
    /// Stops the control and sets workerBusy false, which ends the main window's wait.
    void Form_Unload();

    /// Has the control decode currentFile into the destination folder. `Value` counts for nothing.
    /// The first step that fails ends it silently; for a file below 100 bytes nothing starts.
    void StartMP3(std::string_view Value);
    /// StartMP3 with currentWavFile. Nothing calls it.
    void starthere();

    /// Once, half a second after the load: starts the job a second time.
    void Timer1_Timer();
    /// Shows the progress, and unloads the window when the control has ended, on a stop, and on any
    /// failure. Yields.
    void Timer2_Timer();
    /// "Cancel". No user can reach it, as the window is not shown.
    void Command1_Click();

    /// Decodes currentWavFile beside itself and waits for the end. Nothing calls it.
    void StartDecoding();
    /// Starts each marked line of List4. Nothing calls it.
    void DecodeCheckedFiles();

  private:
    /// What a tick leaves behind it.
    enum class Job { goesOn, over };
    [[nodiscard]] Job tick();
    Status showEnd();
    Status showProgress();
    [[nodiscard]] Result<std::int16_t> readPercentage() const;
    Status start();
    Status startBeside();
    void finish(int load);
    /// Whether the window is loaded, and has been since its load number `load`.
    [[nodiscard]] bool stillLoaded(int load) const;

    const Platform& platform_;
    ProcessState& process_;
    Form6& form6_;
    Form1& form_;
    /// Set by each start; nothing reads it.
    [[maybe_unused]] bool started_ = false;
};

} // namespace sonarith
