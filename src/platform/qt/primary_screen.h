// SPDX-License-Identifier: GPL-3.0-or-later
// Where the screen stands on which the program places its windows. The logic knows this one screen
// and counts from its corner; on a desktop of several screens that corner may be anywhere.
#pragma once

#include <QRect>

namespace sonarith {

/// In device-independent pixels of the whole desktop; empty without a screen.
[[nodiscard]] QRect primaryScreen();

} // namespace sonarith
