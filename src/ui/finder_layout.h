// SPDX-License-Identifier: GPL-3.0-or-later
// How the file finder's window is laid out: what is wanted and where at the left, what was found at
// the right.
#pragma once

#include "forms/frm_search.h"
#include "ui/form_window.h"

namespace sonarith {

[[nodiscard]] WindowLayout finderLayout(FrmSearch& form);

} // namespace sonarith
