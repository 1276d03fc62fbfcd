// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/qt_event_loop.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QThread>
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
    // Not every dispatcher of Qt's comes back between handling what is there and resting: this
    // wait would rest through its own end. Whatever waits or runs within it rests as it will.
    QAbstractEventDispatcher& dispatcher = *QAbstractEventDispatcher::instance();
    const int depth = ++waitDepth_;
    const int level = QThread::currentThread()->loopLevel();
    const auto beforeRest =
        QObject::connect(&dispatcher, &QAbstractEventDispatcher::aboutToBlock, &dispatcher, [&] {
            const bool isInnermost =
                depth == waitDepth_ && level == QThread::currentThread()->loopLevel();
            if (isInnermost && !condition()) {
                dispatcher.wakeUp();
            }
        });
    while (condition()) {
        // Rests until there is an event, and comes back once it has been handled.
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    QObject::disconnect(beforeRest);
    --waitDepth_;
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
