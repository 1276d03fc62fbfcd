// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/qt_event_loop.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include <QApplication>
#include <QTime>
#include <QTimerEvent>

namespace sonarith {
namespace {

/// One repeating timer. Its own event handler rather than a QTimer's signal, so that the Wakeup
/// may be destroyed from within the call.
class QtWakeup : public Wakeup, private QObject {
  public:
    QtWakeup(EventLoop::Duration interval, std::function<void()> handler)
        : call_(std::make_shared<Call>(Call{std::move(handler)})) {
        // Precise whatever the interval: a coarse timer may fire up to 5 % early, and whoever
        // waits for a time to pass would then rest through a second interval.
        startTimer(std::max(interval, EventLoop::Duration(1)), Qt::PreciseTimer);
    }

  private:
    struct Call {
        std::function<void()> handler;
        bool running = false;
    };

    void timerEvent(QTimerEvent*) override {
        // Held here, since the handler may destroy this object; nothing below touches it.
        const std::shared_ptr<Call> call = call_;
        if (!call->running) {
            call->running = true;
            call->handler();
            call->running = false;
        }
    }

    std::shared_ptr<Call> call_;
};

} // namespace

QtEventLoop::QtEventLoop() {
    // The program ends by endProgram alone: it also runs with every window hidden.
    QApplication::setQuitOnLastWindowClosed(false);
    QCoreApplication::setQuitLockEnabled(false);
}

void QtEventLoop::run() {
    QApplication::exec();
}

void QtEventLoop::yield() {
    QCoreApplication::processEvents(QEventLoop::AllEvents);
}

void QtEventLoop::waitWhile(const std::function<bool()>& condition) {
    while (condition()) {
        // What is there already comes first: not every dispatcher of Qt's asks for it once more
        // before it rests.
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        if (condition()) {
            // Rests until there is an event, and comes back once it has been handled.
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }
}

EventLoop::Time QtEventLoop::now() const {
    return std::chrono::duration_cast<Time>(std::chrono::steady_clock::now().time_since_epoch());
}

double QtEventLoop::secondsSinceMidnight() const {
    return QTime::currentTime().msecsSinceStartOfDay() / 1000.0;
}

std::unique_ptr<Wakeup> QtEventLoop::every(Duration interval, std::function<void()> handler) {
    return std::make_unique<QtWakeup>(interval, std::move(handler));
}

void QtEventLoop::endProgram() {
    // Not QApplication::quit(): that only asks each nested loop to return, so the handlers below
    // would go on, and every wait among them would yield again after the end has begun. The
    // process leaves from here, whatever stands on the stack; no destructor runs and no event is
    // handled any more. The last steps are taken out first: a second end within them just ends.
    if (const auto lastSteps = std::exchange(lastSteps_, nullptr)) {
        lastSteps();
    }
    std::_Exit(EXIT_SUCCESS);
}

} // namespace sonarith
