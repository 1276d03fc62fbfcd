// SPDX-License-Identifier: GPL-3.0-or-later
// The CD bar's two buttons: lets the track in hand be heard, and silences it. Nothing is captured.
#pragma once

#include "extraction/extraction_context.h"

namespace sonarith {

class TrackPreview {
  public:
    explicit TrackPreview(ExtractionContext context) : context_(context) {}

    /// Plays the disc from the start of currentTrack; the device stays open.
    void Command11_Click();
    /// Stops and closes recorder and disc. A running capture is lost unsaved while its monitor goes
    /// on, until Cancel or the close button ends it.
    void Command12_Click();

  private:
    ExtractionContext context_;
};

} // namespace sonarith
