// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/qt_mouse_pointer.h"

#include <QCursor>
#include <QGuiApplication>

namespace sonarith {

QtMousePointer::~QtMousePointer() {
    set(Pointer::normal);
}

void QtMousePointer::set(Pointer pointer) {
    if (pointer == shown_) {
        // Override cursors are a stack: a second push would need a second pop.
        return;
    }
    shown_ = pointer;
    if (pointer == Pointer::hourglass) {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        QGuiApplication::restoreOverrideCursor();
    }
}

} // namespace sonarith
