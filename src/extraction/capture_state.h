// SPDX-License-Identifier: GPL-3.0-or-later
// What the extraction jobs share about the disc and the track in hand: track lengths and the two
// ends of the running track, all in milliseconds. No table of start positions exists anywhere.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/result.h"

namespace sonarith {

/// One length in milliseconds for each track, counted from 1.
class TrackLengths {
  public:
    [[nodiscard]] std::int32_t count() const { return static_cast<std::int32_t>(lengths_.size()); }

    /// Tracks 1 to `count`, all of length 0; what was held before is gone.
    void reallocate(std::int32_t count) {
        lengths_.assign(static_cast<std::size_t>(count > 0 ? count : 0), 0);
    }

    /// subscriptOutOfRange outside 1 to count().
    [[nodiscard]] Result<std::int32_t> operator()(std::int32_t track) const {
        if (track < 1 || track > count()) {
            return {ErrorNumber::subscriptOutOfRange, "There is no track of that number."};
        }
        return lengths_[static_cast<std::size_t>(track - 1)];
    }

    /// subscriptOutOfRange, and no change, outside 1 to count().
    Status set(std::int32_t track, std::int32_t milliseconds) {
        if (track < 1 || track > count()) {
            return {ErrorNumber::subscriptOutOfRange, "There is no track of that number."};
        }
        lengths_[static_cast<std::size_t>(track - 1)] = milliseconds;
        return {};
    }

  private:
    std::vector<std::int32_t> lengths_;
};

struct CaptureState {
    TrackLengths trackLengthMs;
    /// Where the track in hand begins and ends on the disc.
    std::int32_t trackStartMs = 0;
    /// 0 also says that no capture is under way; every stop zeroes it.
    std::int32_t trackEndMs = 0;
};

/// Where `track` begins: the plain sum of the lengths before it, with no margin or pre-gap. The
/// walk ends at `track` or behind track number `trackCount`, whichever comes first; a length that
/// is not there, or that would leave 32 bits, adds nothing.
[[nodiscard]] std::int32_t startOfTrackMs(const TrackLengths& lengths, std::int32_t track,
                                          double trackCount);

} // namespace sonarith
