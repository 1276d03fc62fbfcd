// SPDX-License-Identifier: GPL-3.0-or-later
// The layout of the CD player's panel: display, meter and transport at the top, so that they stay
// visible when the panel is shown as a cube, and the mixer below.
#pragma once

#include "forms/form4.h"
#include "ui/form_window.h"

namespace sonarith {

[[nodiscard]] WindowLayout playerLayout(Form4& form);

} // namespace sonarith
