// SPDX-License-Identifier: GPL-3.0-or-later
// Adds signed 32-bit disc positions; fails instead of wrapping around.
#pragma once

#include <cstdint>

#include "platform/result.h"

namespace sonarith {

/// Error: overflow.
[[nodiscard]] inline Result<std::int32_t> checkedSum(std::int32_t a, std::int32_t b) {
    const std::int64_t sum = std::int64_t{a} + b;
    if (sum < INT32_MIN || sum > INT32_MAX) {
        return {ErrorNumber::overflow, "The sum does not fit into 32 bits."};
    }
    return static_cast<std::int32_t>(sum);
}

} // namespace sonarith
