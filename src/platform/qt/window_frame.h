// SPDX-License-Identifier: GPL-3.0-or-later
// Asks the window manager of an X server for the size of the frame that it will add to a window
// that is not on the screen yet (freedesktop.org, Extended Window Manager Hints 1.3,
// _NET_REQUEST_FRAME_EXTENTS). For a window on the screen, Qt knows the size of the frame.
#pragma once

#include <QSize>

namespace sonarith {

/// The width and the height that the frame adds to a normal window, in device-independent pixels. 0
/// by 0 if they are unknown: without an X server, or if the window manager does not reply. Blocks
/// until the reply arrives, but at most for 200 milliseconds.
[[nodiscard]] QSize expectedFrame();

} // namespace sonarith
