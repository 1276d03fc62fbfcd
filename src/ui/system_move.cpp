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
    // Repeated calls install it once.
    handle->installEventFilter(this);
    started_ = start_(*handle);
}

/// The events of the QWindow, before its widgets receive them. The desktop takes the pointer during
/// the move. At its end Qt receives a release at another position, and first sends a mouse move
/// with the button still held. A second move that this event started would begin after the release:
/// the window would follow the pointer until the next click.
bool SystemMove::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonRelease) {
        if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
            started_ = false;
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace sonarith
