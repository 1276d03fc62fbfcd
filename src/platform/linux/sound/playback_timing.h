// SPDX-License-Identifier: GPL-3.0-or-later
// The times of the playback pump.
#pragma once

#include <chrono>

namespace sonarith::sound {

/// None of these times was measured: they were chosen so that the user does not notice them.
struct PlaybackTiming {
    /// After this time without frames the sound counts as ended. It is longer than the card's delay
    /// under load.
    std::chrono::milliseconds dryAfter{60};
    /// How long the first frames of a batch wait for its last ones. It is longer than a batch
    /// lasts, so that the thread wakes once per batch.
    std::chrono::milliseconds batchWait{40};
    /// After this time of silence, or without any frames, the device is closed.
    std::chrono::milliseconds closeAfter{3000};
    /// Minimum delay before a device that was lost or cannot be opened is tried again.
    std::chrono::milliseconds retryAfter{2000};
    /// A device that accepts no frames for this time counts as lost.
    std::chrono::milliseconds stallLimit{2000};
    /// How long the destructor waits for a device call that does not return.
    std::chrono::milliseconds patience{500};
};

} // namespace sonarith::sound
