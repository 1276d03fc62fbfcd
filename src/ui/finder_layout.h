// SPDX-License-Identifier: GPL-3.0-or-later
// The layout of the file finder's window: what to search and where at the left, the results at the
// right.
#pragma once

#include "forms/frm_search.h"
#include "ui/form_window.h"

namespace sonarith {

[[nodiscard]] WindowLayout finderLayout(FrmSearch& form);

} // namespace sonarith
