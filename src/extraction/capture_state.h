// SPDX-License-Identifier: GPL-3.0-or-later
// Holds the state that the classes of extraction/ share: the lengths of all tracks of the disc, and
// the start and end of the current track, all in milliseconds. Start positions of other tracks are
// not stored; startOfTrackMs() computes them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/result.h"

namespace sonarith {

/// One length in milliseconds for each track; the first track has the number 1.
class TrackLengths {
  public:
    [[nodiscard]] std::int32_t count() const { return static_cast<std::int32_t>(lengths_.size()); }

    /// Discards all lengths. From then on, the tracks 1 to `count` exist, each with length 0.
    void reallocate(std::int32_t count) {
        lengths_.assign(static_cast<std::size_t>(count > 0 ? count : 0), 0);
    }

    /// Error: subscriptOutOfRange for a track outside 1 to count().
    [[nodiscard]] Result<std::int32_t> operator()(std::int32_t track) const {
        if (track < 1 || track > count()) {
            return {ErrorNumber::subscriptOutOfRange, "There is no track with this number."};
        }
        return lengths_[static_cast<std::size_t>(track - 1)];
    }

    /// Error: subscriptOutOfRange for a track outside 1 to count(); then nothing changes.
    Status set(std::int32_t track, std::int32_t milliseconds) {
        if (track < 1 || track > count()) {
            return {ErrorNumber::subscriptOutOfRange, "There is no track with this number."};
        }
        lengths_[static_cast<std::size_t>(track - 1)] = milliseconds;
        return {};
    }

  private:
    std::vector<std::int32_t> lengths_;
};

struct CaptureState {
    TrackLengths trackLengthMs;
    /// Start of the current track on the disc.
    std::int32_t trackStartMs = 0;
    /// End of the current track. 0 means that no capture is running. Another value does not mean
    /// that a capture is running: the value remains when a capture reaches the end of its track.
    std::int32_t trackEndMs = 0;
};

/// Start of `track`: the sum of the lengths of the tracks before it, without any margin or pre-gap.
/// The sum ends before `track` or after track number `trackCount`, whichever comes first. A length
/// that is missing is not added, nor is a length with which the sum would overflow 32 bits.
[[nodiscard]] std::int32_t startOfTrackMs(const TrackLengths& lengths, std::int32_t track,
                                          double trackCount);

} // namespace sonarith
