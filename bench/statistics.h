// SPDX-License-Identifier: GPL-3.0-or-later
// What the benchmarks make of the figures of several rounds.
#pragma once

#include <algorithm>
#include <vector>

namespace sonarith::bench {

/// The middle one of the values, of which there is at least one.
inline double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace sonarith::bench
