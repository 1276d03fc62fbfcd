// SPDX-License-Identifier: GPL-3.0-or-later
// A matcher for long audio. It compares all samples, and reports the lengths and the position of
// the first difference.
#pragma once

#include <algorithm>
#include <cstddef>

#include <gmock/gmock.h>

namespace sonarith::fakes {

/// Matches a sequence of frames or samples that equals `expected` in length and in every element.
MATCHER_P(IsSound, expected, "") {
    const auto [at, other] =
        std::mismatch(arg.begin(), arg.end(), expected.begin(), expected.end());
    if (at == arg.end() && other == expected.end()) {
        return true;
    }
    *result_listener << arg.size() << " elements instead of " << expected.size()
                     << ", the first difference is at index " << (at - arg.begin());
    return false;
}

} // namespace sonarith::fakes
