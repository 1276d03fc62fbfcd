// SPDX-License-Identifier: GPL-3.0-or-later
// Handles the events of the hidden window Form6: each load of the window converts one MP3 file to
// WAV with the control ActiveMP31. DecodingDriver chooses the file and adds the WAV to the tree.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "forms/windows.h"
#include "platform/platform.h"
#include "platform/result.h"
#include "settings/process_state.h"

namespace sonarith {

/// Returns the path of the WAV for an MP3 file: in the destination folder, with the MP3's base
/// name. MP3 files of the same name in different folders therefore share one WAV. Errors: those of
/// FileBaseName().
[[nodiscard]] Result<std::string> wavPathFor(const std::string& mp3Path,
                                             const ProcessState& process);

/// While a tick of Timer2 yields, the window may be unloaded and loaded again for the next file.
/// The tick then changes neither the window nor the control, because they belong to the next file.
class ConversionWorker {
  public:
    /// Sets the handlers of Form6's events. All parameters must outlive this object.
    ConversionWorker(const Platform& platform, ProcessState& process, Windows& windows);
    ConversionWorker(const ConversionWorker&) = delete;
    ConversionWorker& operator=(const ConversionWorker&) = delete;

    /// Starts to convert currentFile; if stopRequested is set, unloads the window instead.
    void Form_Load();
    /// Stops the control and sets workerBusy to false, which ends the wait of DecodingDriver.
    void Form_Unload();

    /// Makes the control decode currentFile into the destination folder. `Value` is not used. A
    /// step that fails ends the call without a message; a file below 100 bytes is not decoded.
    void StartMP3(std::string_view Value);
    /// Calls StartMP3 with currentWavFile, which StartMP3 ignores. Only a test calls starthere().
    void starthere();

    /// Runs one time, half a second after the load: calls StartMP3 for the same file again.
    void Timer1_Timer();
    /// Shows the progress. Unloads the window when the control has finished, a stop was requested
    /// or a step has failed. Yields.
    void Timer2_Timer();
    /// The button "Cancel". No user can reach it, because the window is not shown.
    void Command1_Click();

    /// Decodes the file at currentWavFile, not at currentFile, to a WAV in the same folder and
    /// waits for the end. Only tests call this function.
    void StartDecoding();
    /// Calls StartMP3 once for each selected line of List4, and sets the list's index to the line.
    /// Each call decodes currentFile; the text of the line is not used. Only tests call this
    /// function.
    void DecodeCheckedFiles();

  private:
    /// Result of a tick.
    enum class Job { continues, over };
    [[nodiscard]] Job tick();
    Status showEnd();
    Status showProgress();
    [[nodiscard]] Result<std::int16_t> readPercentage() const;
    Status start();
    Status startBeside();
    void finish(int load);
    /// Whether the window is loaded and has not been loaded again since its `load`-th load
    /// (Form6::timesLoaded()).
    [[nodiscard]] bool stillLoaded(int load) const;

    const Platform& platform_;
    ProcessState& process_;
    Form6& form6_;
    Form1& form_;
    /// Set by each call of StartMP3; nothing reads it.
    [[maybe_unused]] bool started_ = false;
};

} // namespace sonarith
