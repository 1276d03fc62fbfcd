// SPDX-License-Identifier: GPL-3.0-or-later
// Mouse buttons in the events of controls.
#pragma once

namespace sonarith {

/// The buttons that are down, or that were pressed.
struct MouseButtons {
    bool left = false;
    bool right = false;
};

} // namespace sonarith
