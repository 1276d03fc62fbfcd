// SPDX-License-Identifier: GPL-3.0-or-later
// Mouse buttons as a control's events name them.
#pragma once

namespace sonarith {

/// Which buttons are down, or were pressed.
struct MouseButtons {
    bool left = false;
    bool right = false;
};

} // namespace sonarith
