// SPDX-License-Identifier: GPL-3.0-or-later
// The four bars of the main window and their menu entries. What stands on the bars is not known
// here.
#pragma once

#include "forms/form1.h"

namespace sonarith {

// Each hides its bar if its entry is checked and shows it if not, and lays the window out anew.
void mnuToolbar_Click(Form1& form);
void mnuCDbar_Click(Form1& form);
void mnuActivityBar_Click(Form1& form);
void mnuStatusbar_Click(Form1& form);

/// The tool bar is seen from here on, whatever its entry says.
void forceToolBarOn(Form1& form);

} // namespace sonarith
