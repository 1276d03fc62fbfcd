// SPDX-License-Identifier: GPL-3.0-or-later
// The two buttons of the CD bar, which play and stop the current track. Captures nothing.
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

    /// Plays the disc from the start of currentTrack; the device stays open.
    void Command11_Click();
    /// Stops and closes recorder and disc. A running capture is lost without being saved, while its
    /// monitor continues until Cancel or the close button ends it.
    void Command12_Click();

  private:
    const Platform& platform_;
    ProcessState& process_;
    Form1& form_;
    const CaptureState& capture_;
};

} // namespace sonarith
