// SPDX-License-Identifier: GPL-3.0-or-later
// Statistics of the figures of several rounds.
#pragma once

#include <algorithm>
#include <vector>

namespace sonarith::bench {

/// The median of at least one value.
inline double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace sonarith::bench
