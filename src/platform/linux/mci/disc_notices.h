// SPDX-License-Identifier: GPL-3.0-or-later
// Creates messages for the user about a disc that is being played, or whose sound was recorded. The
// callers decide when these messages are shown.
#pragma once

#include <chrono>
#include <span>
#include <string>
#include <string_view>

#include "platform/linux/disc/disc.h"
#include "platform/notices.h"

namespace sonarith::mci {

/// How many sectors of one track could not be read correctly while the track was played.
struct TrackLoss {
    int track = 0;
    disc::Damage damage; ///< never empty
    friend bool operator==(const TrackLoss&, const TrackLoss&) = default;
};

/// Example: "Track 3: 2.4 s could not be read and are silent in 1234-3.wav." `path` is the
/// path of the logic ("c:\music\1234-3.wav") under which the recording was saved; only its last
/// component is shown. Times are rounded up to a tenth of a second.
[[nodiscard]] Notice lostSound(std::span<const TrackLoss> losses, std::string_view path);

/// The notice's cause is `drive`, the result of Drive::name(). `since` is how long the drive has
/// not responded.
[[nodiscard]] Notice playingIsInterrupted(const std::string& drive, std::chrono::seconds since);
/// Only for a disc image: the removal of a disc from an optical drive is not reported. `image` is
/// the result of Drive::name(). The notice has no cause.
[[nodiscard]] Notice discHasVanished(const std::string& image);

} // namespace sonarith::mci
