// SPDX-License-Identifier: GPL-3.0-or-later
// Keeps the window system's events from the windows while the program waits for something that may
// hang, and hands them out afterwards in their order. Windows are painted meanwhile. How long that
// lasts is decided in qt_waiting.h.
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

/// For the user-interface thread.
class HeldEvents final : private QObject {
  public:
    /// More events are not held but lost: a minute of a key that repeats itself, or an hour of
    /// clicks at what seems to be dead.
    static constexpr std::size_t mostHeld = 2000;

    HeldEvents() = default;
    ~HeldEvents() override;

    /// From now on no input reaches a window or a control: mouse, keys, wheel, touch, drops, calls
    /// of assistive programs, a window that is closed, moved, resized or activated; and no
    /// notification of a socket. Touches become mouse input, and are held as such. A drop is
    /// accepted in the window's name; of its data only texts and file names are kept. A call of an
    /// assistive program is not answered.
    void hold();

    /// Ends that: what was held is handed out, one event after the other, when control is back in
    /// an event loop, that of a yield included; that a window is closed comes first. A window that
    /// is gone by then gets nothing. What arrives until all is handed out comes behind it.
    void release();

    /// Whether a window was to be closed, or a signal to end the program has arrived, since hold();
    /// until control is back in an event loop.
    [[nodiscard]] bool endAsked() const { return endAsked_; }

  private:
    struct Held {
        QPointer<QObject> receiver;
        std::unique_ptr<QEvent> event;
        std::unique_ptr<QMimeData> data; ///< what a drag carries; the event refers to it
    };

    bool eventFilter(QObject* watched, QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    [[nodiscard]] bool keepFromReceiver(QObject* watched, QEvent* event);
    void keep(QObject* receiver, QEvent* event);
    void keepDrag(QObject* receiver, QEvent* event);
    [[nodiscard]] bool replacesLast(const QObject* receiver, const QEvent& event) const;
    [[nodiscard]] Held takeNext();
    void deliver(const Held& held);

    std::deque<Held> held_;
    QBasicTimer handOut_;
    const QEvent* delivered_ = nullptr; ///< the event that is being handed out
    bool watching_ = false;             ///< installed as a filter
    bool holding_ = false;
    bool endAsked_ = false;
};

} // namespace sonarith
