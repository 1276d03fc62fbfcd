// SPDX-License-Identifier: GPL-3.0-or-later
// Where a form stands that is centred on the screen.
#pragma once

#include "platform/controls/form.h"
#include "platform/shell.h"

namespace sonarith {

inline void centreOnScreen(Form& form, const Shell& shell) {
    form.setLeft((shell.screenWidth() - form.width()) / 2);
    form.setTop((shell.screenHeight() - form.height()) / 2);
}

} // namespace sonarith
