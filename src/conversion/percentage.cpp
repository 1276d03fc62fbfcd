// SPDX-License-Identifier: GPL-3.0-or-later
#include "conversion/percentage.h"

#include <limits>

#include "platform/text/numbers.h"

namespace sonarith {

Result<std::int16_t> percentageOf(std::int32_t position, std::int32_t length) {
    if (length == 0) {
        return {ErrorNumber::divisionByZero, "Division by zero"};
    }
    const auto rounded =
        roundedToInteger32(static_cast<double>(position) / static_cast<double>(length) * 100);
    using Limits = std::numeric_limits<std::int16_t>;
    if (!rounded.ok() || rounded.value() < Limits::min() || rounded.value() > Limits::max()) {
        return {ErrorNumber::overflow, "Overflow"};
    }
    return static_cast<std::int16_t>(rounded.value());
}

} // namespace sonarith
