// SPDX-License-Identifier: GPL-3.0-or-later
// The times of the pump to the speakers.
#pragma once

#include <chrono>

namespace sonarith::sound {

/// The pump's times. None was measured: they were chosen so that the user does not notice them.
struct PlaybackTiming {
    /// After this time without frames the sound has ended for now. Longer than the card's delay
    /// under load.
    std::chrono::milliseconds dryAfter{60};
    /// How long the first frames of a batch wait for its last ones: more than a batch lasts, so
    /// that its thread wakes once for each.
    std::chrono::milliseconds batchWait{40};
    /// After this time of silence, or without any frames, the device is closed.
    std::chrono::milliseconds closeAfter{3000};
    /// Minimum delay before a device that was lost or cannot be opened is tried again.
    std::chrono::milliseconds retryAfter{2000};
    /// A device that accepts no frames for this time is given up.
    std::chrono::milliseconds stallLimit{2000};
    /// How long the destructor waits for a device call that does not return.
    std::chrono::milliseconds patience{500};
};

} // namespace sonarith::sound
