// SPDX-License-Identifier: GPL-3.0-or-later
#include "extraction/capture_state.h"

#include "extraction/checked_sum.h"

namespace sonarith {

std::int32_t startOfTrackMs(const TrackLengths& lengths, std::int32_t track, double trackCount) {
    std::int32_t start = 0;
    // The loop also ends after the last length, because a missing length adds nothing.
    for (std::int32_t i = 1; i <= trackCount && i <= lengths.count() && i != track; ++i) {
        checkedSum(start, lengths(i).valueOr(0)).storeIn(start);
    }
    return start;
}

} // namespace sonarith
