// SPDX-License-Identifier: GPL-3.0-or-later
// Lays out the CD player's panel. The display, the meter and the transport buttons are at the top,
// so that they stay visible when "Show as Cube" reduces the panel's height. The mixer is below
// them.
#pragma once

#include "forms/form4.h"
#include "ui/form_window.h"

namespace sonarith {

[[nodiscard]] WindowLayout playerLayout(Form4& form);

} // namespace sonarith
