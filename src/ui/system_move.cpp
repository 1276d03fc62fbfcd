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

/// Receives the events of the QWindow before its widgets do. Only a press or a release of the left
/// button permits a second move of the window; a mouse move does not. The desktop grabs the pointer
/// while it moves the window. So Qt receives the release at a new position. Before the release,
/// Qt therefore sends the widgets a mouse move with the button down. If this mouse move started a
/// second move of the window, that move would begin after the user has released the button. The
/// window would then follow the pointer until the next click.
bool SystemMove::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonRelease) {
        if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
            started_ = false;
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace sonarith
