// SPDX-License-Identifier: GPL-3.0-or-later
// How long the pump to the speakers waits for what.
#pragma once

#include <chrono>

namespace sonarith::sound {

/// The times that the pump goes by. None was measured: they are what a person does not mind.
struct PlaybackTiming {
    /// No frames for so long: the sound has ended for now. Longer than the card is late under load.
    std::chrono::milliseconds dryAfter{60};
    /// How long the frames of one batch wait for its last ones.
    std::chrono::milliseconds batchWait{25};
    /// After so much silence, or without any frames for so long, the device is closed.
    std::chrono::milliseconds closeAfter{3000};
    /// A device that was lost or cannot be opened is tried again no sooner than this.
    std::chrono::milliseconds retryAfter{2000};
    /// A device that takes nothing for so long is given up.
    std::chrono::milliseconds stallLimit{2000};
    /// The destructor waits so long for a device that does not come back from a call.
    std::chrono::milliseconds patience{500};
};

} // namespace sonarith::sound
