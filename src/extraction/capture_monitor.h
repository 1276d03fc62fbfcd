// SPDX-License-Identifier: GPL-3.0-or-later
// Monitors a running capture. When the disc reaches the end of the track, this class saves the
// captured file and makes TrackCapture start the next track. It also ends a capture early: after a
// stop by the user or a device failure, or when the disk has too little free space.
#pragma once

#include <cstdint>
#include <functional>
#include <utility>

#include "extraction/capture_state.h"
#include "forms/windows.h"
#include "platform/platform.h"
#include "settings/process_state.h"
#include "worktree/add_file.h"

namespace sonarith {

class CaptureMonitor {
  public:
    /// Sets the handlers of tmrRecord, Command8 and Command2. `startTrack` starts the capture of a
    /// track. It is a function, because a reference to TrackCapture would be circular: TrackCapture
    /// refers to this object and calls it when a device fails. All other parameters must outlive
    /// this object.
    CaptureMonitor(const Platform& platform, ProcessState& process, Windows& windows,
                   CaptureState& capture, FileAdder& files,
                   std::function<void(std::int32_t)> startTrack);
    CaptureMonitor(const CaptureMonitor&) = delete;
    CaptureMonitor& operator=(const CaptureMonitor&) = delete;

    /// One tick: shows the progress, and ends the track when its end has been reached. Yields.
    void tmrRecord_Timer();
    /// Shows the number of captured bytes in lblStatus. The label keeps its text if the device
    /// reports no number, or a number that does not fit into 32 bits.
    void ShowCaptureLength();

    /// Not a button's handler: TrackCapture calls this after a device failure. Saves the captured
    /// audio, if any, and moves to the last line of the queue of tracks, so that no further track
    /// starts. Does not call Form1::Enablem(), so the main window's commands stay as they are.
    void cmdCancel_Click();
    /// Requests a stop of every job and ends a running capture. The captured audio is saved and
    /// added to the tree.
    void Command8_Click();
    /// The button "Cancel". Stops every job. Deliberate: nothing resets cancelRequested, so until
    /// the program is restarted, every later extraction of several tracks ends after its first
    /// track.
    void Command2_Click();
    /// The disk guard calls this when the disk has too little free space. Stops every job.
    void Command1_Click();

  private:
    [[nodiscard]] std::int32_t discPositionMs(ReplyBuffer& reply);
    void showProgress(std::int32_t positionMs);
    void endTrack();
    void startNextLine();
    void finishQueue();
    void endByStop();
    void stopTimers();
    void moveToLastLine();

    const Platform& platform_;
    ProcessState& process_;
    Windows& windows_;
    Form1& form_;
    CaptureState& capture_;
    FileAdder& files_;
    std::function<void(std::int32_t)> startTrack_;
};

} // namespace sonarith
