// SPDX-License-Identifier: GPL-3.0-or-later
// The size of the frame that the window manager of an X server will add to a window that is not on
// the screen yet (freedesktop.org, Extended Window Manager Hints 1.3, _NET_REQUEST_FRAME_EXTENTS).
// The frame of a window on the screen is known to Qt.
#pragma once

#include <QSize>

namespace sonarith {

/// Width and height that the frame adds to a normal window, in device-independent pixels. 0 by 0 if
/// it is unknown: without an X server, or with a window manager that does not reply. Blocks until
/// the reply, at most for 200 milliseconds.
[[nodiscard]] QSize expectedFrame();

} // namespace sonarith
