// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/qt_waiting.h"

#include <chrono>
#include <thread>

#include <QDBusPendingCallWatcher>
#include <QDBusVirtualObject>
#include <QGuiApplication>
#include <QTimer>
#include <gtest/gtest.h>

#include "platform/qt/qt_waiting_fixture.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using Outcome = Waiting::Outcome;

TEST_F(QtWaitingTest, AShortWaitHandlesNoEventWhetherOrNotTheWorkCompletes) {
    bool handled = false;
    soon([&] { handled = true; });
    Completion done;
    std::thread worker([&] { done.complete(); });
    EXPECT_EQ(waiting.wait(done, 1h), Outcome::done);
    worker.join();
    EXPECT_FALSE(handled);
    const Completion never;
    EXPECT_EQ(waiting.wait(never, Waiting::plainMoment), Outcome::late);
    EXPECT_FALSE(handled) << "a wait with a short bound must not handle an event";
    loop.yield();
}

TEST_F(QtWaitingTest, AWaitEndsWhenTheWorkCompletes) {
    Completion done;
    std::thread worker([&] {
        std::this_thread::sleep_for(100ms);
        done.complete();
    });
    EXPECT_EQ(waiting.wait(done, 1h), Outcome::done);
    worker.join();
}

TEST_F(QtWaitingTest, LateIsTheOutcomeOfAWaitWhoseBoundHasPassed) {
    const auto begin = loop.now();
    EXPECT_EQ(waitAnd([] {}, 120ms), Outcome::late);
    EXPECT_GE(loop.now() - begin, 119ms); // now() is truncated to whole milliseconds
}

TEST_F(QtWaitingTest, PaintsWindowsDuringAWait) {
    NotingWindow window(log);
    window.update();
    (void)waitAnd([&] { QTimer::singleShot(0, &context, [&] { window.update(); }); });
    EXPECT_GE(window.paints, 2)
        << "a change before the wait and a change during the wait must each be painted";
}

TEST_F(QtWaitingTest, ShowsTheHourglassDuringAWait) {
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    (void)waitAnd([] {
        ASSERT_NE(QGuiApplication::overrideCursor(), nullptr);
        EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
    });
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(QtWaitingTest, DueTimersFireOnceAfterAWait) {
    int ticks = 0;
    const auto timer = loop.every(10ms, [&] { ++ticks; });
    int once = 0;
    QTimer::singleShot(1ms, &context, [&] { ++once; });
    (void)waitAnd([] {}, 200ms);
    EXPECT_EQ(ticks, 0);
    EXPECT_EQ(once, 0);
    loop.yield();
    EXPECT_EQ(ticks, 1) << "a due timer must fire once, at the first yield";
    EXPECT_EQ(once, 1);
}

/// Simulates Qt's bridge to assistive programs, through which such a program can press buttons.
class Bridge : public QDBusVirtualObject {
  public:
    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage&, const QDBusConnection&) override { return false; }
};

TEST_F(QtWaitingTest, AWaitDropsAPendingCallByAnAssistiveProgram) {
    Bridge bridge;
    int calls = 0;
    QMetaObject::invokeMethod(
        &bridge, [&] { ++calls; }, Qt::QueuedConnection);
    (void)waitAnd([] {});
    EXPECT_EQ(calls, 0);
    handleHeldEvents();
    QMetaObject::invokeMethod(
        &bridge, [&] { ++calls; }, Qt::QueuedConnection);
    handleHeldEvents();
    EXPECT_EQ(calls, 1) << "only the call that was queued after the wait must be handled";
}

TEST_F(QtWaitingTest, AWaitDeliversAReplyThatArrivedBeforeItsWatcherExisted) {
    QDBusPendingCallWatcher watcher(
        QDBusPendingCall::fromError(QDBusError(QDBusError::ServiceUnknown, QString())));
    bool delivered = false;
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &context,
                     [&] { delivered = true; });
    (void)waitAnd([] {});
    EXPECT_TRUE(delivered);
}

TEST_F(QtWaitingTest, CanWaitAgainAfterAWaitHasEnded) {
    EXPECT_EQ(waitAnd([] {}), Outcome::late);
    EXPECT_EQ(waitAnd([] {}), Outcome::late);
}

#ifndef NDEBUG
TEST_F(QtWaitingTest, ANestedWaitIsAProgrammingError) {
    EXPECT_DEATH((void)waitAnd([&] {
                     const Completion never;
                     (void)waiting.wait(never, 60ms);
                 }),
                 "no handler runs during a wait");
}
#endif

} // namespace
} // namespace sonarith
