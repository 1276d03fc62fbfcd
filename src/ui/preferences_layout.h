// SPDX-License-Identifier: GPL-3.0-or-later
// Lays out the window of the preferences, with a page for each of its three tabs.
#pragma once

#include "forms/frm_prefs.h"
#include "ui/form_window.h"

namespace sonarith {

[[nodiscard]] WindowLayout preferencesLayout(FrmPrefs& form);

} // namespace sonarith
