// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the disc's table into the main window: identity, track count, one line and one length for
// each track. A disc that is changed later is not noticed; extraction itself is done elsewhere.
#pragma once

#include "extraction/capture_state.h"
#include "forms/form1.h"
#include "platform/platform.h"
#include "settings/process_state.h"

namespace sonarith {

class DiscInspection {
  public:
    /// All outlive this.
    DiscInspection(const Platform& platform, Form1& form, CaptureState& capture)
        : platform_(platform), form_(form), capture_(capture) {}

    /// Fills lblCDID, lblNumTracks, lstTracks and trackLengthMs (milliseconds) and empties
    /// lstRecord. Without a device the labels and lists stay empty, silently; with fewer than two
    /// tracks a message may say so, and the disc stays open. In both cases the lengths stay as
    /// they were. Yields once or twice.
    void InspectCD();

  private:
    void clearDisc();
    void tellUnusable(double trackCount);
    void readTracks(double trackCount, ReplyBuffer& reply);

    const Platform& platform_;
    Form1& form_;
    CaptureState& capture_;
};

} // namespace sonarith
