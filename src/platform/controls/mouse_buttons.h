// SPDX-License-Identifier: GPL-3.0-or-later
// The mouse buttons that the mouse events of controls pass to their handlers. Views also report
// some keys as mouse events, for example the menu key as a press of the right button.
#pragma once

namespace sonarith {

/// In a press or a release, the button that was pressed or released; in a movement, the buttons
/// that are down.
struct MouseButtons {
    bool left = false;
    bool right = false;
};

} // namespace sonarith
