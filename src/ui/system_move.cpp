// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/system_move.h"

#include <utility>

#include <QMouseEvent>

namespace sonarith {

SystemMove::SystemMove(QWidget& window, Start start) : window_(window), start_(std::move(start)) {}

void SystemMove::start() {
    QWindow* handle = window_.windowHandle();
    if (!handle || started_) {
        return;
    }
    // If this object is already installed, this call does not install it a second time.
    handle->installEventFilter(this);
    started_ = start_(*handle);
}

/// Filters the events of the QWindow before its widgets receive them. The desktop grabs the pointer
/// during the move. At the end of the move, Qt receives a release at another position; before the
/// release, Qt sends a mouse move with the button still down. If this mouse move started a second
/// move of the window, that move would begin after the release, and the window would follow the
/// pointer until the next click.
bool SystemMove::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonRelease) {
        if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
            started_ = false;
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace sonarith
