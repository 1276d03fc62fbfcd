// SPDX-License-Identifier: GPL-3.0-or-later
// Shows and hides the four bars of the main window. This file does not depend on the contents of
// the bars.
#pragma once

#include "forms/form1.h"

namespace sonarith {

// Each function hides its bar if the bar's menu entry is checked, and shows the bar otherwise. Each
// also updates the check mark and the layout.
void mnuToolbar_Click(Form1& form);
void mnuCDbar_Click(Form1& form);
void mnuActivityBar_Click(Form1& form);
void mnuStatusbar_Click(Form1& form);

/// Always shows the tool bar, sets the check mark of its menu entry and updates the layout.
void forceToolBarOn(Form1& form);

} // namespace sonarith
