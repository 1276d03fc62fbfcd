// SPDX-License-Identifier: GPL-3.0-or-later
// Defines the time limits of the playback pump.
#pragma once

#include <chrono>

namespace sonarith::sound {

/// The values are estimates and not based on measurements.
struct PlaybackTiming {
    /// After this time without frames the sound counts as ended. The time is longer than
    /// the delay with which the software sound card's thread adds frames under load.
    std::chrono::milliseconds dryAfter{60};
    /// Once the pump has some frames, it waits at most this long for a full batch. A batch is the
    /// largest number of the card's frames in one write to the device. This time is longer than
    /// the playing time of a batch, so that the pump's thread wakes once per batch.
    std::chrono::milliseconds batchWait{40};
    /// After this time of silence or without frames, the device is closed.
    std::chrono::milliseconds closeAfter{3000};
    /// Minimum delay before a device that was lost or cannot be opened is tried again.
    std::chrono::milliseconds retryAfter{2000};
    /// A device that accepts no frames for this time counts as lost.
    std::chrono::milliseconds stallLimit{2000};
    /// How long the pump's destructor waits for a device call that does not return.
    std::chrono::milliseconds patience{500};
};

} // namespace sonarith::sound
