// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the disc's table into the main window: identity, track count, one line and one length for
// each track. A disc that is changed later is not noticed; extraction itself is done elsewhere.
#pragma once

#include "extraction/extraction_context.h"
#include "platform/message_box.h"
#include "platform/random.h"

namespace sonarith {

class DiscInspection {
  public:
    DiscInspection(ExtractionContext context, MessageBoxes& boxes, Random& random)
        : context_(context), boxes_(boxes), random_(random) {}

    /// Fills lblCDID, lblNumTracks, lstTracks and trackLengthMs (milliseconds) and empties
    /// lstRecord. Without a device the labels and lists stay empty, silently; with fewer than two
    /// tracks a message may say so, and the disc stays open. In both cases the lengths stay as
    /// they were. Yields once or twice.
    void InspectCD();

  private:
    void clearDisc();
    void tellUnusable(double trackCount);
    void readTracks(double trackCount, ReplyBuffer& reply);

    ExtractionContext context_;
    MessageBoxes& boxes_;
    Random& random_;
};

} // namespace sonarith
