// SPDX-License-Identifier: GPL-3.0-or-later
// Holds back the window system's events while the program waits for something that may hang, and
// delivers them after the wait: first the requests to close a window, then the others in the order
// in which they arrived. Windows are still painted.
// qt_waiting.h decides how long the events are held.
#pragma once

#include <cstddef>
#include <deque>
#include <memory>

#include <QBasicTimer>
#include <QMimeData>
#include <QObject>
#include <QPointer>

class QWindow;

namespace sonarith {

/// Use it only on the logic thread.
class HeldEvents final : private QObject {
  public:
    /// Maximum number of held events; further events are dropped, except requests to close a
    /// window. This number is enough for half a minute of key repeat, or an hour of clicks on a
    /// window that seems to hang.
    static constexpr std::size_t mostHeld = 2000;

    HeldEvents() = default;
    ~HeldEvents() override;

    /// From now on windows and widgets receive no input by mouse, keyboard, wheel or touch, no
    /// drops, and no requests to close, move, resize or activate a window. Touches are held as
    /// mouse input. A drop is accepted on behalf of the window; only texts and file names of its
    /// data are kept. Calls over D-Bus (from assistive programs or panels) are not held: they get
    /// no reply. Notifications of sockets are not held either: they repeat until the socket is
    /// read.
    void hold();

    /// Ends the holding that hold() began. The next event loop that runs, including that of a
    /// yield, delivers the held events one by one; requests to close a window come first. Events
    /// for a window that was destroyed are dropped. Until all held events are delivered, new events
    /// of the window system are held, too.
    void release();

    /// Whether, since hold(), a request to close a window or a signal to end the program has
    /// arrived. Becomes false when an event loop runs after release().
    [[nodiscard]] bool endRequested() const { return endRequested_; }

  private:
    struct Held {
        QPointer<QObject> receiver;
        std::unique_ptr<QEvent> event;
        std::unique_ptr<QMimeData> data; ///< the data of a drag; the event refers to it
    };

    bool eventFilter(QObject* watched, QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    [[nodiscard]] bool holdBack(QObject* watched, QEvent* event);
    void keep(QObject* receiver, QEvent* event);
    void keepDrag(QObject* receiver, QEvent* event);
    [[nodiscard]] bool replacesLast(const QObject* receiver, const QEvent& event) const;
    [[nodiscard]] Held takeNext();
    void deliver(const Held& held);

    std::deque<Held> held_;
    QBasicTimer handOut_;
    const QEvent* delivered_ = nullptr; ///< the event that is being delivered
    bool watching_ = false;             ///< installed as an event filter
    bool holding_ = false;
    bool endRequested_ = false;
};

} // namespace sonarith
