// SPDX-License-Identifier: GPL-3.0-or-later
// Places a form in the centre of the screen.
#pragma once

#include "platform/controls/form.h"
#include "platform/shell.h"

namespace sonarith {

inline void centreOnScreen(Form& form, const Shell& shell) {
    form.setLeft((shell.screenWidth() - form.width()) / 2);
    form.setTop((shell.screenHeight() - form.height()) / 2);
}

} // namespace sonarith
