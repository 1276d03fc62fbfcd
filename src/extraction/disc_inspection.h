// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the disc's identity and table of contents. Stores the identity, the number of tracks and
// one line for each track in controls of the main window, and the length of each track in
// CaptureState. Does not notice a later change of the disc. Extracts nothing.
#pragma once

#include "extraction/capture_state.h"
#include "forms/form1.h"
#include "platform/platform.h"
#include "settings/process_state.h"

namespace sonarith {

class DiscInspection {
  public:
    /// All parameters must outlive this object.
    DiscInspection(const Platform& platform, Form1& form, CaptureState& capture)
        : platform_(platform), form_(form), capture_(capture) {}

    /// Clears lblCDID, lblNumTracks, lstTracks and lstRecord, and reads the disc.
    /// - With two or more tracks, fills lblCDID, lblNumTracks, lstTracks and trackLengthMs
    ///   (milliseconds). Yields once.
    /// - With fewer than two tracks, fills only the labels and leaves the disc open. Shows a
    ///   message if the reported number is 0 or 1. Yields twice.
    /// - If the disc cannot be opened, fills nothing and shows no message. Does not yield.
    void InspectCD();

  private:
    void clearDisc();
    void showUnusable(double trackCount);
    void readTracks(double trackCount, ReplyBuffer& reply);

    const Platform& platform_;
    Form1& form_;
    CaptureState& capture_;
};

} // namespace sonarith
