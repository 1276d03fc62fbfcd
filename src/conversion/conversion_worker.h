// SPDX-License-Identifier: GPL-3.0-or-later
// One instance of the window Form6, which is never shown: the conversion of one MP3 file to WAV, by
// the control ActiveMP31. Which file is in work, and what becomes of the WAV, the main window says.
#pragma once

#include <string_view>

#include "conversion/worker_context.h"
#include "platform/controls/timer.h"
#include "platform/result.h"

namespace sonarith {

class ConversionWorker {
  public:
    explicit ConversionWorker(WorkerContext context);
    ConversionWorker(const ConversionWorker&) = delete;
    ConversionWorker& operator=(const ConversionWorker&) = delete;

    /// Starts on currentFile; with stopRequested set, unloads the window instead.
    void Form_Load();
    /// Stops the control and sets workerBusy false, which ends the main window's wait. From here on
    /// this instance leaves the control alone: it may be working for the next one.
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

    /// Whether a tick or a wait of this instance has not returned, so that it may not be destroyed.
    [[nodiscard]] bool running() const { return running_ > 0; }

    CommandButton Command1{"Command1", "Cancel"};
    Timer Timer1;
    Timer Timer2;

  private:
    /// What a tick leaves behind it.
    enum class Job { goesOn, over };
    [[nodiscard]] Job tick();
    Status showEnd();
    Status showProgress();
    [[nodiscard]] Result<std::int16_t> readPercentage() const;
    Status start();
    Status startBeside();
    void finish();
    void unload();

    WorkerContext context_;
    /// Set by each start; nothing reads it.
    [[maybe_unused]] bool started_ = false;
    bool loaded_ = true;
    int running_ = 0;
};

} // namespace sonarith
