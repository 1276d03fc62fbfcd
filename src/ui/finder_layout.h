// SPDX-License-Identifier: GPL-3.0-or-later
// Lays out the file finder's window: at the left, the controls that say what to search for and
// where; at the right, the results.
#pragma once

#include "forms/frm_search.h"
#include "ui/form_window.h"

namespace sonarith {

[[nodiscard]] WindowLayout finderLayout(FrmSearch& form);

} // namespace sonarith
