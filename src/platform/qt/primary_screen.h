// SPDX-License-Identifier: GPL-3.0-or-later
// Returns the position and size of the screen on which the program places its windows. The logic
// uses only this screen, with coordinates relative to its upper left corner. On a desktop of
// several screens that corner may have any position.
#pragma once

#include <QRect>

namespace sonarith {

/// In device-independent pixels, in the coordinates of the whole desktop; an empty rectangle if
/// there is no screen.
[[nodiscard]] QRect primaryScreen();

} // namespace sonarith
