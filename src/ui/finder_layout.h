// SPDX-License-Identifier: GPL-3.0-or-later
// Lays out the file finder's window: the search options and the buttons at the left, the results at
// the right, and texts about the search below.
#pragma once

#include "forms/frm_search.h"
#include "ui/form_window.h"

namespace sonarith {

[[nodiscard]] WindowLayout finderLayout(FrmSearch& form);

} // namespace sonarith
