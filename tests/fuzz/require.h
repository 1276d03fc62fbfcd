// SPDX-License-Identifier: GPL-3.0-or-later
// The assertion of the fuzz targets. It ends the process if a condition is false, also in builds
// without assert().
#pragma once

#include <cstdlib>

namespace sonarith::fuzz {

inline void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

} // namespace sonarith::fuzz
