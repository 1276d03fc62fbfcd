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

#include "platform/batched_wakeup.h"

namespace sonarith {
namespace {

/// A repeating timer. It handles timer events itself and does not use the signal of a QTimer, so
/// that the handler may destroy the Wakeup.
class QtWakeup : public Wakeup, private QObject {
  public:
    QtWakeup(EventLoop::Duration interval, std::function<void()> handler)
        : call_(std::make_shared<Call>(Call{std::move(handler)})) {
        // Every timer is precise: a coarse timer may fire up to 5 % early, and code that waits
        // until a time has passed would then have to wait for another interval.
        startTimer(std::max(interval, EventLoop::Duration(1)), Qt::PreciseTimer);
    }

  private:
    struct Call {
        std::function<void()> handler;
        bool running = false;
    };

    void timerEvent(QTimerEvent*) override {
        // The pointer is copied, because the handler may destroy this object. The code below
        // accesses no member.
        const std::shared_ptr<Call> call = call_;
        if (!call->running) {
            call->running = true;
            call->handler();
            call->running = false;
        }
    }

    std::shared_ptr<Call> call_;
};

/// The Wakeup of everyInSound(). Playing and recording start only within handlers, so it suffices
/// to check for sound after the handlers have returned, before the thread sleeps.
class SoundWakeup : public Wakeup {
  public:
    SoundWakeup(EventLoop& loop, EventLoop::Duration interval, std::function<void()> handler,
                std::function<bool()> isSilent)
        : batches_(loop, interval, std::move(handler), std::move(isSilent)) {
        const QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
        QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, &context_,
                         [this] { batches_.endSilence(); });
    }

  private:
    BatchedWakeup batches_;
    QObject context_; ///< of the connection
};

} // namespace

QtEventLoop::QtEventLoop() {
    // Only endProgram() ends the program: the program continues even while all windows are hidden.
    QApplication::setQuitOnLastWindowClosed(false);
    QCoreApplication::setQuitLockEnabled(false);
}

void QtEventLoop::run() {
    QApplication::exec();
}

void QtEventLoop::yield() {
    constexpr std::chrono::microseconds pause{250};
    if (std::chrono::steady_clock::now() < lastAsked_ + pause) {
        QCoreApplication::sendPostedEvents();
        return;
    }
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    lastAsked_ = std::chrono::steady_clock::now();
}

void QtEventLoop::waitWhile(const std::function<bool()>& condition) {
    // Some of Qt's event dispatchers do not return between handling pending events and sleeping, so
    // this wait would sleep although a handled event has made `condition` false. Therefore
    // `condition` is also checked just before the dispatcher sleeps (aboutToBlock), but only while
    // this wait is the innermost wait or event loop: an outer wait must not wake an inner one.
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
        // Handles events and returns. Sleeps while there are no events.
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

std::unique_ptr<Wakeup> QtEventLoop::everyInSound(Duration interval,
                                                  std::function<void()> handler) {
    if (!isSilent_) {
        return every(interval, std::move(handler));
    }
    return std::make_unique<SoundWakeup>(*this, interval, std::move(handler), isSilent_);
}

void QtEventLoop::endProgram() {
    // QApplication::quit() is not used, because it only asks each nested loop to return: the
    // handlers on the stack would then continue and might yield again. Instead the process exits
    // here: no destructor runs and no further event is handled. The last steps are moved out first,
    // so that a nested endProgram() exits at once.
    if (const auto lastSteps = std::exchange(lastSteps_, nullptr)) {
        lastSteps();
    }
    std::_Exit(EXIT_SUCCESS);
}

} // namespace sonarith
