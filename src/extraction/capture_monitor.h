// SPDX-License-Identifier: GPL-3.0-or-later
// Watches a running capture from the outside, ends each track at its position on the disc and calls
// for the next one; holds every way of ending a capture early. How a track starts is not known
// here.
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
    /// Becomes the handler of tmrRecord, Command8 and Command2. `startTrack` starts the capture of
    /// a track; it is a call and no reference to the job that does it, since that job in turn ends
    /// its failures through this one. All else outlives this.
    CaptureMonitor(const Platform& platform, ProcessState& process, Windows& windows,
                   CaptureState& capture, FileAdder& files,
                   std::function<void(std::int32_t)> startTrack);
    CaptureMonitor(const CaptureMonitor&) = delete;
    CaptureMonitor& operator=(const CaptureMonitor&) = delete;

    /// One tick: shows the progress, and ends the track where its end has been reached. Yields.
    void tmrRecord_Timer();
    /// The bytes captured so far into lblStatus, which keeps its text if the device gives none.
    void ShowCaptureLength();

    /// After a device failure: the queue is over, the commands stay closed.
    void cmdCancel_Click();
    /// Stop everything. What was captured is saved and added to the tree.
    void Command8_Click();
    /// Cancel. Every later queue ends after its first track until the program is started again.
    void Command2_Click();
    /// The disk is too full to go on.
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
