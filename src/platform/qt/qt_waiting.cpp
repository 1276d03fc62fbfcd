// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/qt_waiting.h"

#include <algorithm>
#include <cassert>

#include <QCoreApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QThread>

namespace sonarith {
namespace {

/// How long a wait sleeps between two polls of the window system. Painting is delayed by at most
/// this time; and with so few polls, a wait of several seconds takes almost no processor time.
constexpr Waiting::Duration frame{20};
/// One pass of an event dispatcher does not always handle events that were posted during that pass.
constexpr int passesPerFrame = 4;

class Hourglass {
  public:
    Hourglass() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~Hourglass() { QGuiApplication::restoreOverrideCursor(); }
    Hourglass(const Hourglass&) = delete;
    Hourglass& operator=(const Hourglass&) = delete;
};

/// Paints, and passes new events of the window system to the event filter HeldEvents.
void handleEvents() {
    for (int pass = 0; pass < passesPerFrame; ++pass) {
        // Excludes timers, most of which belong to the logic. Despite its X11 name, the flag works
        // on all dispatchers of Unix systems.
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::X11ExcludeTimers);
    }
}

} // namespace

Waiting::Outcome QtWaiting::wait(const Completion& completion, Duration bound) {
    assert(!waiting_ && "no handler runs during a wait, so no second wait can begin");
    assert(QThread::currentThread() == QCoreApplication::instance()->thread());
    if (held_.endRequested()) {
        return waitInHaste(completion, bound);
    }
    const Clock::time_point deadline = Clock::now() + bound;
    if (completion.restFor(std::min(bound, plainMoment))) {
        return Outcome::done;
    }
    return bound <= plainMoment ? Outcome::late : waitPainting(completion, deadline);
}

Waiting::Outcome QtWaiting::waitInHaste(const Completion& completion, Duration bound) {
    const Clock::time_point begin = Clock::now();
    const Duration left = std::chrono::duration_cast<Duration>(hasteLeft_);
    const bool done = completion.restFor(std::min(bound, left));
    hasteLeft_ = std::max(hasteLeft_ - (Clock::now() - begin), Clock::duration::zero());
    return done ? Outcome::done : Outcome::ended;
}

Waiting::Outcome QtWaiting::waitPainting(const Completion& completion, Clock::time_point deadline) {
    const Hourglass shown;
    waiting_ = true;
    held_.hold();
    Outcome outcome = Outcome::late;
    for (;;) {
        handleEvents();
        if (held_.endRequested()) {
            outcome = Outcome::ended;
            hasteLeft_ = haste;
            break;
        }
        const auto left = std::chrono::ceil<Duration>(deadline - Clock::now());
        if (completion.restFor(std::clamp(left, Duration::zero(), frame))) {
            outcome = Outcome::done;
            break;
        }
        if (left <= frame) {
            break;
        }
    }
    held_.release();
    waiting_ = false;
    return outcome;
}

} // namespace sonarith
