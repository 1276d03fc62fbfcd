// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/held_events.h"

#include <algorithm>
#include <utility>

#include <QCoreApplication>
#include <QDropEvent>
#include <QTimerEvent>
#include <QWindow>

#include "platform/qt/end_requests.h"

namespace sonarith {
namespace {

enum class Treatment {
    pass,     ///< delivered now: painting, and Qt's internal events
    keep,     ///< delivered later
    keepDrag, ///< accepted, and delivered later
    refuse,   ///< dropped; a call over D-Bus gets no reply
};

/// Whether `object` receives calls over D-Bus, from assistive programs or from panels that show a
/// menu of this program. Such calls run handlers, as clicks do, and cannot be delivered later.
/// A reply to a query is no such call. A notice that a service on the bus has another owner is no
/// such call either. The replies and the notices must not be lost: TrayHosts receives them during a
/// wait and handles them after the wait.
bool isCalledFromOutside(const QObject& object) {
    const QByteArray name = object.metaObject()->className();
    // Two classes have names that begin with QDBusPendingCallWatcher. The second one,
    // QDBusPendingCallWatcherHelper, receives a reply that arrived before its watcher existed.
    if (name.startsWith("QDBusPendingCallWatcher") || name == "QDBusServiceWatcher") {
        return false;
    }
    return object.inherits("QDBusVirtualObject") || name.startsWith("QDBus");
}

Treatment treatmentOf(const QObject& watched, QEvent::Type type) {
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::NativeGesture:
    case QEvent::Enter:
    case QEvent::Leave:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::InputMethod:
    case QEvent::ContextMenu:
    case QEvent::Close:
    case QEvent::FocusIn:
    case QEvent::FocusOut:
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
    case QEvent::LayoutRequest: // moves and resizes widgets, which runs handlers
        return Treatment::keep;
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::WindowStateChange:
        return watched.isWindowType() ? Treatment::keep : Treatment::pass;
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        return Treatment::keepDrag;
    case QEvent::DragLeave:
        return Treatment::keep;
    case QEvent::TouchBegin: // Qt turns unaccepted touches into mouse events, which are kept
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::SockAct: // repeats until the socket is read
        return Treatment::refuse;
    case QEvent::MetaCall:
        return isCalledFromOutside(watched) ? Treatment::refuse : Treatment::pass;
    default:
        return Treatment::pass;
    }
}

/// Copies texts and file names. The original data is destroyed after the drop: it belongs to the
/// program in which the drag began. Other formats are omitted, since that program would have to
/// convert them now.
std::unique_ptr<QMimeData> copyOf(const QMimeData& data) {
    auto copy = std::make_unique<QMimeData>();
    if (data.hasUrls()) {
        copy->setUrls(data.urls());
    }
    if (data.hasText()) {
        copy->setText(data.text());
    }
    return copy;
}

std::unique_ptr<QDropEvent> copyOf(const QDropEvent& drag, const QMimeData& data) {
    const QPoint at = drag.position().toPoint();
    const Qt::DropActions actions = drag.possibleActions();
    std::unique_ptr<QDropEvent> copy;
    if (drag.type() == QEvent::DragEnter) {
        copy =
            std::make_unique<QDragEnterEvent>(at, actions, &data, drag.buttons(), drag.modifiers());
    } else if (drag.type() == QEvent::DragMove) {
        copy =
            std::make_unique<QDragMoveEvent>(at, actions, &data, drag.buttons(), drag.modifiers());
    } else {
        copy = std::make_unique<QDropEvent>(drag.position(), actions, &data, drag.buttons(),
                                            drag.modifiers());
    }
    copy->setDropAction(drag.proposedAction());
    return copy;
}

} // namespace

HeldEvents::~HeldEvents() = default;

void HeldEvents::hold() {
    if (!std::exchange(watching_, true)) {
        QCoreApplication::instance()->installEventFilter(this);
    }
    holding_ = true;
    endRequested_ = false;
}

void HeldEvents::release() {
    holding_ = false;
    // A timer delivers the held events, because every event loop handles the notifier of the
    // signal pipe before timers. So if a signal to end the program (such as SIGTERM) has
    // arrived, it is handled before the held events.
    handOut_.start(0, this);
}

bool HeldEvents::eventFilter(QObject* watched, QEvent* event) {
    if (event == delivered_) {
        return false;
    }
    // Until all held events are delivered, new events of the window system are held, too.
    const bool mustWait =
        holding_ ||
        (!held_.empty() && (watched->isWindowType() || event->type() == QEvent::Shortcut));
    return mustWait && holdBack(watched, event);
}

bool HeldEvents::holdBack(QObject* watched, QEvent* event) {
    switch (treatmentOf(*watched, event->type())) {
    case Treatment::pass:
        return false;
    case Treatment::keep:
        endRequested_ = endRequested_ || (holding_ && event->type() == QEvent::Close);
        keep(watched, event);
        if (event->type() == QEvent::Close) {
            event->ignore();
        }
        return true;
    case Treatment::keepDrag:
        keepDrag(watched, event);
        return true;
    case Treatment::refuse:
        endRequested_ = endRequested_ || (holding_ && isEndRequest(*watched));
        event->ignore();
        return true;
    }
    return false;
}

void HeldEvents::keep(QObject* receiver, QEvent* event) {
    std::unique_ptr<QEvent> copy(event->clone());
    if (replacesLast(receiver, *event)) {
        held_.back().event = std::move(copy);
    } else if (held_.size() < mostHeld || event->type() == QEvent::Close) {
        held_.push_back({receiver, std::move(copy), nullptr});
    }
}

void HeldEvents::keepDrag(QObject* receiver, QEvent* event) {
    auto& drag = static_cast<QDropEvent&>(*event);
    std::unique_ptr<QMimeData> data = copyOf(*drag.mimeData());
    std::unique_ptr<QEvent> copy = copyOf(drag, *data);
    if (replacesLast(receiver, drag)) {
        held_.pop_back();
    }
    if (held_.size() < mostHeld) {
        held_.push_back({receiver, std::move(copy), std::move(data)});
    }
    drag.acceptProposedAction();
}

bool HeldEvents::replacesLast(const QObject* receiver, const QEvent& event) const {
    if (held_.empty() || held_.back().receiver != receiver ||
        held_.back().event->type() != event.type()) {
        return false;
    }
    switch (event.type()) {
    case QEvent::MouseMove:
        return static_cast<const QMouseEvent&>(event).buttons() ==
               static_cast<const QMouseEvent&>(*held_.back().event).buttons();
    case QEvent::DragMove:
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::LayoutRequest:
        return true;
    default:
        return false;
    }
}

HeldEvents::Held HeldEvents::takeNext() {
    const auto close = std::find_if(held_.begin(), held_.end(), [](const Held& held) {
        return held.event->type() == QEvent::Close;
    });
    const auto next = close == held_.end() ? held_.begin() : close;
    Held taken = std::move(*next);
    held_.erase(next);
    return taken;
}

void HeldEvents::timerEvent(QTimerEvent*) {
    endRequested_ = false;
    if (held_.empty()) {
        handOut_.stop();
        QCoreApplication::instance()->removeEventFilter(this);
        watching_ = false;
        return;
    }
    // A handler that yields must receive the remaining input in its yield, as it would receive
    // input from the window system. A timer does not fire within its own event, so the timer is
    // restarted before the delivery.
    handOut_.start(0, this);
    deliver(takeNext());
}

void HeldEvents::deliver(const Held& held) {
    if (!held.receiver) {
        return;
    }
    const QEvent* const outer = std::exchange(delivered_, held.event.get());
    // sendEvent() is not used, because it would clear the flag that marks events of the window
    // system.
    qApp->notify(held.receiver, held.event.get());
    delivered_ = outer;
}

} // namespace sonarith
