// SPDX-License-Identifier: GPL-3.0-or-later
// The assertion of the fuzz targets: ends the process if the condition is false.
#pragma once

#include <cstdlib>

namespace sonarith::fuzz {

inline void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

} // namespace sonarith::fuzz
