// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the mouse buttons from an event of Qt, for the handlers of controls.
#pragma once

#include <QMouseEvent>

#include "platform/controls/mouse_buttons.h"

namespace sonarith {

/// The button that was pressed or released.
[[nodiscard]] inline MouseButtons pressed(const QMouseEvent& event) {
    return {event.button() == Qt::LeftButton, event.button() == Qt::RightButton};
}

/// The buttons that are down.
[[nodiscard]] inline MouseButtons held(const QMouseEvent& event) {
    return {event.buttons().testFlag(Qt::LeftButton), event.buttons().testFlag(Qt::RightButton)};
}

} // namespace sonarith
