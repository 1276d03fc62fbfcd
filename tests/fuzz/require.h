// SPDX-License-Identifier: GPL-3.0-or-later
// How a fuzz target says what must hold: it ends the process where it does not.
#pragma once

#include <cstdlib>

namespace sonarith::fuzz {

inline void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

} // namespace sonarith::fuzz
