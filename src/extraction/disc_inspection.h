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

    /// Fills lblCDID, lblNumTracks, lstTracks and trackLengthMs (milliseconds) and clears
    /// lstRecord. If the disc cannot be opened, clears the labels and lists and shows no message.
    /// If the reported number of tracks is less than two, fills only the labels, clears the lists,
    /// and leaves the disc open. Then shows one message for the number 0, another message for 1,
    /// and no message for any other number (an invalid reply may be negative or a fraction).
    /// trackLengthMs is unchanged if the disc cannot be opened or has fewer than two tracks. Yields
    /// once; twice for fewer than two tracks; not at all if the disc cannot be opened.
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
