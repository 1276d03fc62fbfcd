// SPDX-License-Identifier: GPL-3.0-or-later
// Computes statistics of the results of several rounds.
#pragma once

#include <algorithm>
#include <vector>

namespace sonarith::bench {

/// The median; for an even number of values the larger of the two middle values. `values` must not
/// be empty.
inline double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace sonarith::bench
