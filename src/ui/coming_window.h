// SPDX-License-Identifier: GPL-3.0-or-later
// Stands in for a window that is not built yet: its caption, and a sentence that says so.
#pragma once

#include "ui/form_window.h"

namespace sonarith {

[[nodiscard]] WindowLayout comingWindow(Form& form);

} // namespace sonarith
