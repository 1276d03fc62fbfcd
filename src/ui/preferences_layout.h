// SPDX-License-Identifier: GPL-3.0-or-later
// How the preferences are laid out: a page for each of the three tabs.
#pragma once

#include "forms/frm_prefs.h"
#include "ui/form_window.h"

namespace sonarith {

[[nodiscard]] WindowLayout preferencesLayout(FrmPrefs& form);

} // namespace sonarith
