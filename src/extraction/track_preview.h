// SPDX-License-Identifier: GPL-3.0-or-later
// Handles the two buttons of the CD bar: one plays the disc from the current track on, the other
// stops it. This class captures nothing.
#pragma once

#include "extraction/capture_state.h"
#include "forms/form1.h"
#include "platform/platform.h"
#include "settings/process_state.h"

namespace sonarith {

class TrackPreview {
  public:
    /// Sets the handlers of Command11 and Command12. All parameters must outlive this object.
    TrackPreview(const Platform& platform, ProcessState& process, Form1& form,
                 const CaptureState& capture);
    TrackPreview(const TrackPreview&) = delete;
    TrackPreview& operator=(const TrackPreview&) = delete;

    /// Opens the CD device and plays the disc from the start of ProcessState::currentTrack. Does
    /// not close the device.
    void Command11_Click();
    /// Stops and closes the recorder and the CD device. A running capture is not saved and is lost.
    /// Its CaptureMonitor continues until the monitor is stopped, for example by Cancel.
    void Command12_Click();

  private:
    const Platform& platform_;
    ProcessState& process_;
    Form1& form_;
    const CaptureState& capture_;
};

} // namespace sonarith
