// SPDX-License-Identifier: GPL-3.0-or-later
// Position of the screen on which the program places its windows. The logic uses only this screen
// and uses coordinates relative to its corner, which on a desktop of several screens may be
// anywhere.
#pragma once

#include <QRect>

namespace sonarith {

/// In device-independent pixels of the whole desktop; empty without a screen.
[[nodiscard]] QRect primaryScreen();

} // namespace sonarith
