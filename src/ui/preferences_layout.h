// SPDX-License-Identifier: GPL-3.0-or-later
// The layout of the preferences: a page for each of the three tabs.
#pragma once

#include "forms/frm_prefs.h"
#include "ui/form_window.h"

namespace sonarith {

[[nodiscard]] WindowLayout preferencesLayout(FrmPrefs& form);

} // namespace sonarith
